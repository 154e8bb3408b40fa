// The least that a program with a window is, laid out and not shown: what the `idle` benchmark holds ours
// against.

#include <QApplication>
#include <QLabel>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QLabel window(QStringLiteral("Hello"));
    window.setWindowTitle(QStringLiteral("Trivial Program"));
    window.adjustSize();
    window.winId();
    return QApplication::exec();
}
