#pragma once

#include <QObject>
#include <QString>
#include <QTemporaryFile>
#include <functional>
#include <memory>

class QDBusPendingCallWatcher;

namespace quillmoth::platform {

/// A script that KWin runs, from its start until the object's end. Main thread; only the end waits for KWin,
/// for a quarter of a second at most.
class KWinScript final : public QObject {
public:
    /// `name` tells it from other scripts of this process.
    explicit KWinScript(const QString& name);
    ~KWinScript() override;

    /// Has KWin, by its unique name on the bus, run `text`, in place of what this script was before. A
    /// failure is logged.
    void run(const QString& owner, const QString& text);

private:
    void send(const char* method, const QVariantList& arguments,
              std::function<void(const QDBusPendingCallWatcher&)> answered);
    void load(const QString& text);

    QString name_;
    QString owner_;
    std::unique_ptr<QTemporaryFile> file_;
};

} // namespace quillmoth::platform
