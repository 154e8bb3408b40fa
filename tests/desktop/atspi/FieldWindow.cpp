#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>

#include <memory>

namespace {

QString contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

/// A window with one field: atspi-field-window line|short|password|readonly TEXT, or an editor:
/// atspi-field-window file PATH
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3)
        return 2;
    const QString& kind = arguments[1];
    std::unique_ptr<QWidget> field;
    if (kind == "file") {
        field = std::make_unique<QPlainTextEdit>(contentOf(arguments[2]));
    } else if (kind == "readonly") {
        auto editor = std::make_unique<QPlainTextEdit>(arguments[2]);
        editor->setReadOnly(true);
        editor->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        field = std::move(editor);
    } else {
        auto line = std::make_unique<QLineEdit>(arguments[2]);
        if (kind == "password")
            line->setEchoMode(QLineEdit::Password);
        if (kind == "short")
            line->setMaxLength(static_cast<int>(arguments[2].size()));
        field = std::move(line);
    }
    field->resize(400, 60);
    field->show();
    return QApplication::exec();
}
