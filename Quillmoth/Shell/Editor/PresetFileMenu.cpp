#include "Quillmoth/Shell/Editor/PresetFileMenu.h"

#include "Platform/Platform.h"
#include "Quillmoth/Assistant/DataModel.h"
#include "Quillmoth/Editor/PresetFile.h"
#include "Quillmoth/Shell/Controls/MenuStyle.h"
#include "Quillmoth/Shell/Controls/ShellWindow.h"
#include "Quillmoth/Shell/Controls/WindowStyle.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QPainter>
#include <QStandardPaths>

#include <utility>

namespace quillmoth {

namespace {

constexpr double kMenuDot = 3;
constexpr double kMenuDotPitch = 5;

QString countOf(std::size_t count) {
    return count == 1 ? QStringLiteral("1 preset") : QStringLiteral("%1 presets").arg(count);
}

QString fileNameOf(const QString& path) {
    return QFileInfo(path).fileName();
}

} // namespace

PresetFileMenu::PresetFileMenu(std::shared_ptr<DataModel> model, const platform::Platform& platform,
                               std::function<void(std::size_t)> imported)
    : StripButton(QString()), model_(std::move(model)), documents_(platform.documents),
      uuidSource_(platform.uuidSource), imported_(std::move(imported)) {
    setObjectName(QStringLiteral("files"));
    setAccessibleName(QStringLiteral("Import and export"));
    setToolTip(QStringLiteral("Import and export presets"));
    connect(this, &StripButton::clicked, this, [this] { showMenu(); });
}

void PresetFileMenu::showMenu() {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    styleMenu(*menu, palette());
    connect(menu->addAction(QStringLiteral("Import Presets…")), &QAction::triggered, this,
            [this] { chooseFile(false); });
    connect(menu->addAction(QStringLiteral("Export All Presets…")), &QAction::triggered, this,
            [this] { chooseFile(true); });
    menu->popup(mapToGlobal(QPoint(width() - menu->sizeHint().width(), height() + 2)));
}

void PresetFileMenu::chooseFile(bool saves) {
    auto* dialog = new QFileDialog(window(), saves ? QStringLiteral("Export All Presets")
                                                   : QStringLiteral("Import Presets"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(saves ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog->setFileMode(saves ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog->setNameFilters({QStringLiteral("Presets (*.json)"), QStringLiteral("All files (*)")});
    dialog->setDefaultSuffix(QStringLiteral("json"));
    dialog->setDirectory(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    if (saves)
        dialog->selectFile(QStringLiteral("Quillmoth Presets.json"));
    connect(dialog, &QFileDialog::fileSelected, this, [this, saves](const QString& path) {
        if (saves)
            exportTo(path);
        else
            importFrom(path);
    });
    dialog->open();
}

void PresetFileMenu::importFrom(const QString& path) {
    const auto imported = importPresets(*model_, documents_, uuidSource_, path.toStdString());
    if (!imported) {
        showAlert(this, true, QStringLiteral("“%1” holds no presets that can be read.").arg(fileNameOf(path)),
                  QString::fromStdString(imported.error().description));
        return;
    }
    const QString present =
        imported->present == 0 ? QString()
        : imported->present == 1
            ? QStringLiteral("1 preset of the file was in the list already.")
            : QStringLiteral("%1 presets of the file were in the list already.").arg(imported->present);
    showAlert(this, false,
              QStringLiteral("%1 %2 added.")
                  .arg(countOf(imported->added),
                       imported->added == 1 ? QStringLiteral("was") : QStringLiteral("were")),
              present);
    imported_(imported->added);
}

void PresetFileMenu::exportTo(const QString& path) {
    const auto written = exportPresets(*model_, documents_, path.toStdString());
    if (!written)
        showAlert(this, true, QStringLiteral("The presets could not be exported."),
                  QString::fromStdString(written.error().description));
}

void PresetFileMenu::paintEvent(QPaintEvent* event) {
    StripButton::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(windowTheme(palette()).text2);
    const QPointF centre = QRectF(rect()).center();
    for (const int place : {-1, 0, 1})
        painter.drawEllipse(centre + QPointF(place * kMenuDotPitch, 0), kMenuDot / 2, kMenuDot / 2);
}

} // namespace quillmoth
