#include "Quillmoth/Shell/Windows/Recorder.h"

#include <QHBoxLayout>
#include <QLabel>

#include <utility>

namespace quillmoth {

namespace {

constexpr int kFormWidth = 300;
constexpr int kRecorderGap = 9;

} // namespace

Recorder::Recorder(const QString& title, KeyboardShortcuts::Name name, RecorderServices services) {
    auto* recorder = new RecorderCocoa(std::move(name), std::move(services));
    recorder->setAccessibleName(title);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kRecorderGap);
    row->addWidget(new QLabel(title));
    row->addWidget(recorder);
    row->addStretch();
}

DoubleShortcut::DoubleShortcut(RecorderServices services)
    : Recorder(QStringLiteral("Open Quillmoth Hotkey:"), name(), std::move(services)) {
    setMaximumWidth(kFormWidth);
}

} // namespace quillmoth
