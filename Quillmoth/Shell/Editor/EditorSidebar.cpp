#include "Quillmoth/Shell/Editor/EditorSidebar.h"

#include "Quillmoth/Shell/Editor/PresetListView.h"
#include "Quillmoth/Shell/Editor/SegmentButton.h"
#include "Quillmoth/Shell/Looks/Lengths.h"
#include "Quillmoth/Shell/Looks/Motion.h"
#include "Quillmoth/Shell/Looks/Palette.h"

#include <QButtonGroup>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace quillmoth {

namespace {

constexpr int kSidebarWidth = 300;
constexpr int kSidebarPadding = 10;
constexpr double kAddRadius = 6;

/// "+ Add": a row without a frame.
class AddButton final : public QPushButton {
public:
    AddButton() : QPushButton("+ Add") { setFixedHeight(window::kRowHeight); }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const WindowTheme& theme = windowTheme(palette());
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? theme.rowSelected : theme.rowHovered);
        painter.setOpacity(isDown() ? 1 : hoverShare(*this));
        painter.drawRoundedRect(rect(), kAddRadius, kAddRadius);
        painter.setOpacity(1);
        QFont medium = font();
        medium.setWeight(QFont::Medium);
        painter.setFont(medium);
        painter.setPen(theme.indigoText);
        painter.drawText(rect().adjusted(kSidebarPadding, 0, -kSidebarPadding, 0),
                         Qt::AlignLeft | Qt::AlignVCenter, text());
    }
};

SegmentButton* makeSegment(const char* text, const char* description) {
    auto* segment = new SegmentButton(text, "tray.and.arrow.up.fill");
    segment->setAccessibleName(text);
    segment->setAccessibleDescription(description);
    return segment;
}

} // namespace

PresetPage::PresetPage(PromptEditorView& view, PromptTab& tab, Callbacks callbacks)
    : view_(view), tab_(tab), callbacks_(std::move(callbacks)), rows_(tab),
      list_(new PresetListView(rows_, {.choose = [this](int row) { choose(row); },
                                       .move = [this](int row, int gap) { move(row, gap); },
                                       .edit = callbacks_.edit,
                                       .remove = [this] { remove(); }})) {
    list_->setAccessibleName("Presets");
    list_->setAccessibleDescription("Alt with the arrow keys moves a preset, Delete deletes it");
    auto* addButton = new AddButton;
    connect(addButton, &QPushButton::clicked, this, [this] { add(); });
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(list_);
    layout->addWidget(addButton);
    layout->addStretch();
}

void PresetPage::refresh() {
    list_->refresh();
}

void PresetPage::takeFocus() {
    list_->setFocus(Qt::OtherFocusReason);
}

void PresetPage::add() {
    view_.add();
    callbacks_.changed();
    layout()->activate();
    list_->scrollToBottom();
    callbacks_.edit();
}

void PresetPage::choose(int row) {
    tab_.selection = rows_.presetAt(row);
    callbacks_.changed();
}

void PresetPage::move(int row, int gap) {
    if (view_.moveRow(static_cast<std::size_t>(row), static_cast<std::size_t>(gap)))
        callbacks_.changed();
}

void PresetPage::remove() {
    view_.deletePreset();
    callbacks_.changed();
}

EditorSidebar::EditorSidebar(PromptEditorView& view, PresetPage::Callbacks callbacks)
    : view_(view), callbacks_(std::move(callbacks)), tabs_(new QButtonGroup(this)),
      pages_(new QStackedWidget) {
    setFixedWidth(kSidebarWidth);
    pages_->addWidget(new PresetPage(view_, view_.contextTab, callbacks_));
    pages_->addWidget(new PresetPage(view_, view_.nonContextTab, callbacks_));
    auto* library = new QPushButton("Prompt Library");
    connect(library, &QPushButton::clicked, this, [this] { view_.openPromptLibrary(); });
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kSidebarPadding, kSidebarPadding, kSidebarPadding + 1, kSidebarPadding);
    layout->setSpacing(kSidebarPadding);
    layout->addWidget(makeTabs());
    layout->addWidget(pages_, 1);
    layout->addWidget(library);
}

QWidget* EditorSidebar::makeTabs() {
    auto* bar = new SegmentBar;
    SegmentButton* context = makeSegment("Context", "Presets that use the selected text");
    SegmentButton* nonContext = makeSegment("Non-context", "Presets without selected text");
    tabs_->addButton(context, static_cast<int>(PromptEditorView::Kind::context));
    tabs_->addButton(nonContext, static_cast<int>(PromptEditorView::Kind::nonContext));
    bar->addSegment(context);
    bar->addSegment(nonContext);
    connect(tabs_, &QButtonGroup::idToggled, this, [this](int number, bool isOn) {
        if (isOn)
            showTab(number);
    });
    return bar;
}

void EditorSidebar::showTab(int number) {
    const auto kind = static_cast<PromptEditorView::Kind>(number);
    if (view_.shownKind() == kind)
        return;
    view_.showTab(kind);
    callbacks_.changed();
}

void EditorSidebar::refresh() {
    const int number = static_cast<int>(view_.shownKind());
    tabs_->button(number)->setChecked(true);
    pages_->setCurrentIndex(number);
    shownPage().refresh();
}

PresetPage& EditorSidebar::shownPage() const {
    return *static_cast<PresetPage*>(pages_->currentWidget());
}

void EditorSidebar::takeFocus() {
    shownPage().takeFocus();
}

void EditorSidebar::paintEvent(QPaintEvent* /*event*/) {
    const WindowTheme& theme = windowTheme(palette());
    QPainter painter(this);
    painter.fillRect(rect(), theme.side);
    painter.fillRect(QRect(width() - 1, 0, 1, height()), theme.divider);
}

} // namespace quillmoth
