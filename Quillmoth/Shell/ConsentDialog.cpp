#include "Quillmoth/Shell/ConsentDialog.h"

#include <QMessageBox>
#include <QPushButton>

#include <utility>

namespace quillmoth {

void askForAccessibilityConsent(std::function<void()> agreed) {
    auto* dialog =
        new QMessageBox(QMessageBox::Question, "Quillmoth", "Switch on accessibility for this desktop?");
    dialog->setInformativeText(
        "Quillmoth reads the text that you select in other programs, and writes answers back, through the "
        "desktop's accessibility service. It reads only what is selected when you press the hot key, and "
        "never "
        "from password fields.\n\n"
        "Qt 6 programs and Chromium browsers that are running now notice the change when they are "
        "restarted.");
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
