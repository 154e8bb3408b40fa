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

using Finished = std::function<void(markdown::ImageAnswer)>;

void loadFile(const QString& path, const Finished& finished) {
    QFile file(path);
    finished({file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray()});
}

void loadFromNetwork(QNetworkAccessManager& network, const QUrl& url, Finished finished) {
    QNetworkReply* reply = network.get(QNetworkRequest(url));
    QObject::connect(reply, &QNetworkReply::finished, reply, [reply, finished = std::move(finished)] {
        finished({reply->error() == QNetworkReply::NoError ? reply->readAll() : QByteArray()});
        reply->deleteLater();
    });
}

} // namespace

markdown::ImageServices makeImageLoader(const QString& folder) {
    auto network = std::make_shared<QNetworkAccessManager>();
    const auto download = [folder, network](const markdown::ImageRequest& request, Finished finished) {
        const QUrl url(request.url);
        if (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https")) {
            loadFromNetwork(*network, url, std::move(finished));
        } else if (url.isLocalFile() || url.isRelative()) {
            loadFile(QDir(folder).absoluteFilePath(url.isLocalFile() ? url.toLocalFile() : url.path()),
                     finished);
        } else {
            finished({});
        }
    };
    return {.download = download, .permissions = {.isUnrestricted = true}};
}

} // namespace quillmoth::markdownview
