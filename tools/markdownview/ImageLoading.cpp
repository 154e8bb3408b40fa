#include "ImageLoading.h"

#include <QDir>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

#include <memory>
#include <utility>

namespace quillmoth::markdownview {

namespace {

using Finished = std::function<void(QByteArray)>;

void loadFile(const QString& path, const Finished& finished) {
    QFile file(path);
    finished(file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray());
}

void loadFromNetwork(QNetworkAccessManager& network, const QUrl& url, Finished finished) {
    QNetworkReply* reply = network.get(QNetworkRequest(url));
    QObject::connect(reply, &QNetworkReply::finished, reply, [reply, finished = std::move(finished)] {
        finished(reply->error() == QNetworkReply::NoError ? reply->readAll() : QByteArray());
        reply->deleteLater();
    });
}

} // namespace

markdown::ImageDownload makeImageLoader(const QString& folder) {
    auto network = std::make_shared<QNetworkAccessManager>();
    return [folder, network](const QString& text, Finished finished) {
        const QUrl url(text);
        if (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https")) {
            loadFromNetwork(*network, url, std::move(finished));
        } else if (url.isLocalFile() || url.isRelative()) {
            loadFile(QDir(folder).absoluteFilePath(url.isLocalFile() ? url.toLocalFile() : url.path()),
                     finished);
        } else {
            finished({});
        }
    };
}

} // namespace quillmoth::markdownview
