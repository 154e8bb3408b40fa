#include "Quillmoth/Shell/Editor/PromptEditorWindow.h"

#include "Platform/MainQueue.h"
#include "Platform/Platform.h"
#include "Quillmoth/Shell/Controls/TextArea.h"
#include "Quillmoth/Shell/Editor/EditorSidebar.h"
#include "Quillmoth/Shell/Editor/EditorStrip.h"
#include "Quillmoth/Shell/Editor/PresetFields.h"
#include "Quillmoth/Shell/Editor/PresetFileMenu.h"
#include "Quillmoth/Shell/Editor/PresetForm.h"
#include "Quillmoth/Shell/Looks/OwnKeys.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>

#include <algorithm>

namespace quillmoth {

namespace {

constexpr QSize kSize{780, 646};
constexpr QSize kLeastSize{640, 460};
constexpr int kStripPadding = 14;
constexpr int kStripGap = 12;

/// Whether the text field in `object` has something of its own to undo.
bool undoesTyping(const QObject* object) {
    if (const auto* field = qobject_cast<const QLineEdit*>(object))
        return field->isUndoAvailable();
    if (const auto* area = qobject_cast<const QPlainTextEdit*>(object))
        return area->document()->isUndoAvailable();
    return true;
}

} // namespace

PromptEditorWindow::PromptEditorWindow(std::shared_ptr<DataModel> model, const platform::Platform& platform,
                                       ColorScheme& colorScheme)
    : ShellWindow("Prompt Editor", colorScheme), view_(std::move(model), platform),
      mainQueue_(platform.mainQueue), title_(new ElidedTitle), undo_(new QPushButton("Undo Delete")),
      files_(new PresetFileMenu(view_.coreAppModel, platform,
                                [this](std::size_t added) { showImported(added); })),
      undoKey_(new QShortcut(ownKeySequence(OwnKey::undo), this)),
      sidebar_(new EditorSidebar(view_,
                                 {.changed = [this] { refresh(); }, .edit = [this] { form_->focusName(); }})),
      form_(new PresetForm(view_, [this] { refresh(); })), detail_(new QStackedWidget) {
    setAttribute(Qt::WA_QuitOnClose, false);
    setMinimumSize(kLeastSize);
    resize(kSize);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeStrip());
    layout->addWidget(makeBody(), 1);
    makeShortcuts();
    applyLook();
    setMinimumWidth(std::max(kLeastSize.width(), sidebar_->width() + form_->minimumSizeHint().width()));
    sidebar_->takeFocus();
    storeSubscription_ =
        view_.coreAppModel->_PromptM.get()->objectWillChange([this](std::string_view) { storeWillChange(); });
    refresh();
}

PromptEditorWindow::~PromptEditorWindow() = default;

QWidget* PromptEditorWindow::makeStrip() {
    auto* toggle = new StripButton("sidebar.leading");
    toggle->setAccessibleName("Toggle Sidebar");
    toggle->setToolTip("Toggle Sidebar (F9)");
    connect(toggle, &StripButton::clicked, this, [this] { toggleSidebar(); });
    undo_->setToolTip("Puts the preset back (Ctrl+Z)");
    connect(undo_, &QPushButton::clicked, this, [this] { undoDelete(); });
    auto* strip = new StripGround;
    auto* layout = new QHBoxLayout(strip);
    layout->setContentsMargins(kStripPadding, 0, kStripPadding, 1);
    layout->setSpacing(kStripGap);
    layout->addWidget(toggle);
    layout->addWidget(title_, 1);
    layout->addWidget(undo_);
    layout->addWidget(files_);
    return strip;
}

QWidget* PromptEditorWindow::makeBody() {
    detail_->addWidget(new EmptyDetail);
    detail_->addWidget(form_);
    auto* body = new QWidget;
    auto* layout = new QHBoxLayout(body);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(sidebar_);
    layout->addWidget(detail_, 1);
    return body;
}

void PromptEditorWindow::makeShortcuts() {
    undoKey_->setAutoRepeat(false);
    connect(undoKey_, &QShortcut::activated, this, [this] { undoDelete(); });
    connect(new QShortcut(ownKeySequence(OwnKey::toggleSidebar), this), &QShortcut::activated, this,
            [this] { toggleSidebar(); });
    for (QLineEdit* field : form_->findChildren<QLineEdit*>())
        field->installEventFilter(this);
    for (QPlainTextEdit* area : form_->findChildren<QPlainTextEdit*>())
        area->installEventFilter(this);
}

bool PromptEditorWindow::eventFilter(QObject* watched, QEvent* event) {
    // A field claims Ctrl+Z for itself even where it has nothing to undo; a deletion then comes next.
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::Undo) && view_.canUndoDelete() &&
        !undoesTyping(watched)) {
        event->ignore();
        return true;
    }
    return ShellWindow::eventFilter(watched, event);
}

void PromptEditorWindow::takeFirstFocus() {
    sidebar_->takeFocus();
}

void PromptEditorWindow::themeChanged() {
    update();
}

void PromptEditorWindow::toggleSidebar() {
    sidebar_->setVisible(!sidebar_->isVisible());
}

void PromptEditorWindow::undoDelete() {
    view_.undoDelete();
    refresh();
}

void PromptEditorWindow::showPreset(std::int64_t index) {
    view_.showPreset(index);
    refresh();
}

void PromptEditorWindow::showImported(std::size_t added) {
    if (added == 0)
        return refresh();
    // They stand at the end.
    const std::size_t count = view_.coreAppModel->_PromptM.get()->prompts().size();
    showPreset(static_cast<std::int64_t>(count - added));
}

void PromptEditorWindow::storeWillChange() {
    if (*isRefreshDue_)
        return;
    *isRefreshDue_ = true;
    mainQueue_.async([this, due = std::weak_ptr(isRefreshDue_)] {
        const auto isDue = due.lock();
        if (isDue && *isDue)
            refresh();
    });
}

void PromptEditorWindow::refresh() {
    *isRefreshDue_ = false;
    const std::optional<EditorView> editor = view_.editor();
    title_->setText(editor ? QString::fromStdString(editor->preset().name) : QString());
    sidebar_->refresh();
    form_->refresh();
    detail_->setCurrentIndex(editor ? 1 : 0);
    undo_->setVisible(view_.canUndoDelete());
    undoKey_->setEnabled(view_.canUndoDelete());
}

} // namespace quillmoth
