#include "Quillmoth/Shell/ConsentDialog.h"

#include <QMessageBox>
#include <QPushButton>

#include <QStringList>

#include <utility>

namespace quillmoth {

namespace {

QString restartAdvice(const std::vector<std::string>& programs) {
    if (programs.empty())
        return "Programs that you start from then on notice it.";
    QStringList names;
    for (const std::string& program : programs)
        names << QString::fromStdString(program);
    return "Please restart afterwards, for they look for it only when they start: " + names.join(", ") + ".";
}

} // namespace

void askForAccessibilityConsent(const std::vector<std::string>& programs, std::function<void()> agreed) {
    auto* dialog =
        new QMessageBox(QMessageBox::Question, "Quillmoth", "Switch on accessibility for this desktop?");
    dialog->setInformativeText(
        "Quillmoth reads the text that you select in other programs, and writes answers back, through the "
        "desktop's accessibility service. It reads only what is selected when you press the hot key, and "
        "never from password fields.\n\n" +
        restartAdvice(programs));
    QPushButton* agree = dialog->addButton("Switch On", QMessageBox::AcceptRole);
    dialog->addButton("Not Now", QMessageBox::RejectRole);
    dialog->setDefaultButton(agree);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QMessageBox::buttonClicked, dialog,
                     [dialog, agree, agreed = std::move(agreed)](QAbstractButton* button) {
                         if (button == agree)
                             agreed();
                         dialog->close();
                     });
    dialog->show();
}

} // namespace quillmoth
