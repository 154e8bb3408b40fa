#include "Quillmoth/Shell/Windows/ConsentDialog.h"

#include "Quillmoth/Shell/Windows/ShellWindow.h"
#include "Quillmoth/Shell/Windows/WindowTheme.h"

#include <QMessageBox>
#include <QPixmap>
#include <QPushButton>
#include <QStringList>

#include <utility>

namespace quillmoth {

namespace {

constexpr int kMarkSize = 48;

QString restartAdvice(const std::vector<std::string>& programs) {
    if (programs.empty())
        return QStringLiteral("Programs that you start from then on notice it.");
    QStringList names;
    for (const std::string& program : programs)
        names << QString::fromStdString(program);
    return QStringLiteral("Please restart afterwards, for they look for it only when they start: ") +
           names.join(QStringLiteral(", ")) + QLatin1Char('.');
}

} // namespace

QDialog* askForAccessibilityConsent(const std::vector<std::string>& programs, bool dark,
                                    std::function<void()> agreed) {
    auto* dialog = new QMessageBox(QMessageBox::NoIcon, QStringLiteral("Quillmoth"),
                                   QStringLiteral("Switch on accessibility for this desktop?"));
    dialog->setIconPixmap(QIcon(QStringLiteral(":/symbols/quillmoth.svg"))
                              .pixmap(QSize(kMarkSize, kMarkSize), dialog->devicePixelRatioF()));
    dialog->setInformativeText(
        QStringLiteral(
            "Quillmoth reads the text that you select in other programs, and writes answers back, through "
            "the "
            "desktop's accessibility service. It reads only what is selected when you press the hot key, and "
            "never from password fields.\n\n") +
        restartAdvice(programs));
    QPushButton* agree = dialog->addButton(QStringLiteral("Switch On"), QMessageBox::AcceptRole);
    dialog->addButton(QStringLiteral("Not Now"), QMessageBox::RejectRole);
    dialog->setDefaultButton(agree);
    styleAlert(*dialog, windowPalette(dark));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QMessageBox::buttonClicked, dialog,
                     [dialog, agree, agreed = std::move(agreed)](QAbstractButton* button) {
                         if (button == agree)
                             agreed();
                         dialog->close();
                     });
    dialog->show();
    return dialog;
}

} // namespace quillmoth
