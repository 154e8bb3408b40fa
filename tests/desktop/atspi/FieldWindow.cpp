#include <QAccessible>
#include <QAccessibleWidget>
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

/// A widget whose accessible text tells nonsense about itself.
class NonsenseWidget : public QWidget {
public:
    NonsenseWidget() { setFocusPolicy(Qt::StrongFocus); }
};

class NonsenseText : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    explicit NonsenseText(QWidget* widget) : QAccessibleWidget(widget, QAccessible::EditableText) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                                  : QAccessibleWidget::interface_cast(type);
    }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.editable = true;
        return state;
    }

    void selection(int, int* start, int* end) const override {
        *start = -5;
        *end = 1'000'000;
    }

    [[nodiscard]] int selectionCount() const override { return 2'000'000'000; }

    void addSelection(int, int) override {}

    void removeSelection(int) override {}

    void setSelection(int, int, int) override {}

    [[nodiscard]] int cursorPosition() const override { return -77; }

    void setCursorPosition(int) override {}

    [[nodiscard]] QString text(int, int) const override { return "odd"; }

    [[nodiscard]] int characterCount() const override { return -3; }

    [[nodiscard]] QRect characterRect(int) const override { return {}; }

    [[nodiscard]] int offsetAtPoint(const QPoint&) const override { return 12345; }

    void scrollToSubstring(int, int) override {}

    QString attributes(int, int* start, int* end) const override {
        *start = 9;
        *end = -9;
        return {};
    }
};

QAccessibleInterface* nonsenseFor(const QString&, QObject* object) {
    auto* widget = dynamic_cast<NonsenseWidget*>(object);
    return widget != nullptr ? std::make_unique<NonsenseText>(widget).release() : nullptr;
}

} // namespace

/// A window with one field: atspi-field-window line|short|password|readonly|nonsense TEXT, or an editor:
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
    } else if (kind == "nonsense") {
        QAccessible::installFactory(nonsenseFor);
        field = std::make_unique<NonsenseWidget>();
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
