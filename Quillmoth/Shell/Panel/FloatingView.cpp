#include "Quillmoth/Shell/Panel/FloatingView.h"

#include "Quillmoth/Shell/Looks/Lengths.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Panel/PanelAccessibility.h"
#include "Quillmoth/Shell/Panel/PanelButton.h"
#include "Quillmoth/Shell/Panel/PanelKeys.h"

#include <QClipboard>
#include <QGraphicsOpacityEffect>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>

namespace quillmoth {

namespace {

constexpr double kInactiveOpacity = 0.6;

void setDimmed(QWidget& widget, bool dimmed) {
    if (dimmed == (widget.graphicsEffect() != nullptr))
        return;
    QGraphicsOpacityEffect* effect = nullptr;
    if (dimmed) {
        effect = new QGraphicsOpacityEffect(&widget);
        effect->setOpacity(kInactiveOpacity);
    }
    widget.setGraphicsEffect(effect);
}

bool isModifier(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
        return true;
    default:
        return false;
    }
}

bool isTyping(const QKeyEvent& event) {
    const bool isChord = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    return !isChord && !event.text().isEmpty() && event.text().at(0).isPrint() &&
           event.key() != Qt::Key_Space;
}

} // namespace

FloatingView::FloatingView(std::shared_ptr<FloatingViewController> controller, FloatingViewOptions options)
    : controller_(std::move(controller)), note_(new LinkNote(this)),
      command_(new CommandArea(controller_, this)), notice_(new NoticeLine(this)),
      list_(new ListArea(controller_, withNote(options.messages), this)),
      bar_(new BottomBar(controller_, this)), clock_(options.frameMilliseconds, [this] { refresh(); }) {
    setAccessibleName(QStringLiteral("Quillmoth"));
    watch(command_->field());
    watch(command_->backButton());
    watch(list_->settingsButton());
    for (auto* group : bar_->findChildren<QAbstractButton*>())
        watch(*group);
    list_->conversation().setTabOrderBehind(command_->field());
    observe();
    refresh();
}

MessageServices FloatingView::withNote(MessageServices services) {
    services.tell = [this, note = QPointer(note_)](const QString& text, bool isHeard) {
        if (!note)
            return;
        note->tell(text);
        if (isHeard)
            spoken_.announce(text);
    };
    return services;
}

void FloatingView::observe() {
    updates_ = controller_->onUpdate([this] {
        // A hidden panel catches up when it is shown.
        if (!isVisible())
            return;
        // An answer can begin and end within a frame.
        announceChanges();
        clock_.request();
    });
    fieldFocus_ = controller_->onFieldFocus([this] { focusCommandField(); });
    presetScroll_ = controller_->onScrollToPreset([this](std::int64_t index) { list_->revealPreset(index); });
    historyScroll_ =
        controller_->onScrollToHistory([this](std::int64_t index) { list_->revealHistory(index); });
}

void FloatingView::watch(QWidget& widget) {
    widget.installEventFilter(this);
}

void FloatingView::refresh() {
    ++refreshCount_;
    command_->refresh();
    if (notice_->tell(QString::fromStdString(controller_->_notice)) && !notice_->text().isEmpty())
        spoken_.announce(notice_->text());
    list_->refresh();
    bar_->refresh();
    watchFormFields();
    followFocusField();
    followHeights();
    announceChanges();
}

void FloatingView::watchFormFields() {
    const auto& fields = list_->form().fields();
    if (fields == watchedFields_)
        return;
    watchedFields_ = fields;
    QWidget* previous = &command_->backButton();
    for (BracketField* field : fields) {
        watch(field->edit());
        QWidget::setTabOrder(previous, &field->edit());
        previous = &field->edit();
    }
}

void FloatingView::place() {
    const int left = panel::kPadding;
    const int inside = width() - 2 * panel::kPadding;
    // The scroll bars lie in the padding at the right.
    const int withBar = inside + panel::kPadding;
    wantedCommandHeight_ = command_->heightForWidth(withBar);
    placedNoticeHeight_ = noticeHeight();
    // On a small screen the panel is lower than it would be: then each gets half of what there is.
    const int room = height() - panel::kFixedHeight - placedNoticeHeight_;
    const int commandRoom = qMax(panel::kCommandRow, qMax(room - panel::kLeastListHeight, room / 2));
    const int commandHeight = qMin(wantedCommandHeight_, commandRoom);
    command_->setGeometry(left, panel::kPadding, withBar, commandHeight);
    command_->setCut(commandHeight < wantedCommandHeight_);
    notice_->setGeometry(left + NoticeLine::kInset, panel::kPadding + commandHeight,
                         inside - 2 * NoticeLine::kInset, placedNoticeHeight_);
    const int listTop =
        panel::kPadding + commandHeight + placedNoticeHeight_ + panel::kGapAboveDivider + panel::kDivider;
    const int barTop = height() - panel::kPadding - panel::kBottomBar;
    const int listHeight = barTop - panel::kGapBelowDivider - panel::kDivider - listTop;
    list_->setGeometry(left, listTop, withBar, qMax(0, listHeight));
    bar_->setGeometry(left, barTop, inside, panel::kBottomBar);
    note_->placeAbove(left, barTop - panel::kGapBelowDivider - panel::kDivider, inside);
    update();
}

int FloatingView::noticeHeight() const {
    return notice_->heightForWidth(width() - 2 * (panel::kPadding + NoticeLine::kInset));
}

void FloatingView::followHeights() {
    if (command_->heightForWidth(command_->width()) != wantedCommandHeight_ ||
        noticeHeight() != placedNoticeHeight_)
        placeAndTell();
}

void FloatingView::placeAndTell() {
    const QSize former = leastSize();
    place();
    if (leastSize() != former && onLeastSizeChanged)
        onLeastSizeChanged();
}

QSize FloatingView::leastSize() const {
    return {bar_->leastWidth() + 2 * panel::kPadding,
            panel::kFixedHeight + wantedCommandHeight_ + placedNoticeHeight_ + panel::kLeastListHeight};
}

QSize FloatingView::naturalSize() const {
    return {panel::kNaturalWidth, panel::kFixedHeight + panel::kCommandRow + panel::kNaturalListHeight};
}

void FloatingView::resizeEvent(QResizeEvent*) {
    placeAndTell();
}

void FloatingView::showEvent(QShowEvent* event) {
    PanelContent::showEvent(event);
    if (!std::exchange(appeared_, true))
        controller_->viewAppeared();
    refresh();
    // What is typed next takes the place of what was left in the field; a blank stands for a question on its
    // way.
    if (!event->spontaneous() && !command_->field().text().trimmed().isEmpty())
        command_->field().selectEverything();
}

void FloatingView::hideEvent(QHideEvent* event) {
    PanelContent::hideEvent(event);
    if (!event->spontaneous())
        controller_->noticeRead();
}

void FloatingView::setPanelActive(bool active) {
    active_ = active;
    command_->setActive(active);
    list_->setActive(active);
    bar_->setActive(active);
    setDimmed(*command_, !active);
    setDimmed(*bar_, !active);
}

void FloatingView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const int inside = width() - 2 * panel::kPadding;
    for (const int y : {list_->y() - panel::kDivider, list_->geometry().bottom() + 1})
        painter.fillRect(panel::kPadding, y, inside, panel::kDivider, kPanelTheme.divider);
}

bool FloatingView::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
        return handleKey(watched, *static_cast<QKeyEvent*>(event));
    case QEvent::FocusIn:
        focusMoved(*static_cast<QWidget*>(watched), static_cast<QFocusEvent*>(event)->reason());
        return false;
    default:
        return false;
    }
}

void FloatingView::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (handleKey(this, *event))
        event->accept();
    else if (isReturn && event->modifiers() == Qt::NoModifier && !event->isAutoRepeat())
        controller_->barItemClicked(FloatingViewController::BarItem::select);
    else if (isTyping(*event) && !command_->field().isHidden())
        typeIntoField(*event);
    else
        event->ignore();
}

/// Typing goes on in the field, wherever the Tab key has led.
void FloatingView::typeIntoField(const QKeyEvent& event) {
    focusCommandField();
    const std::unique_ptr<QKeyEvent> copy(event.clone());
    QCoreApplication::sendEvent(&command_->field(), copy.get());
}

bool FloatingView::handleKey(QObject* watched, const QKeyEvent& event) {
    if (!event.isAutoRepeat() && !isModifier(event))
        controller_->noticeRead();
    if (event.matches(QKeySequence::Copy))
        return copySelection(watched);
    if (scrollByKey(event) || moveInRows(watched, event))
        return true;
    const auto key = panelKeyFor(event);
    if (!key)
        return false;
    if (event.isAutoRepeat() && !actsOnRepeat(*key))
        return true;
    // The field has Escape for itself, with the same effect.
    if (*key == FloatingViewController::Key::cancel && watched == &command_->field())
        return false;
    controller_->press(*key);
    return true;
}

/// What is selected in the keyboard's own field goes first, and is the field's business.
bool FloatingView::copySelection(QObject* watched) {
    const auto* field = qobject_cast<QTextEdit*>(watched);
    const QString text = list_->selectedText();
    if ((field && field->textCursor().hasSelection()) || text.isEmpty())
        return false;
    QGuiApplication::clipboard()->setText(text);
    return true;
}

bool FloatingView::scrollByKey(const QKeyEvent& event) {
    const bool down = event.key() == Qt::Key_PageDown;
    if ((!down && event.key() != Qt::Key_PageUp) || event.modifiers() != Qt::NoModifier)
        return false;
    list_->scrollView().scrollByPages(down ? 1 : -1);
    return true;
}

/// The arrows belong to the rows, wherever the Tab key has led; the field takes the Return that follows.
bool FloatingView::moveInRows(const QObject* watched, const QKeyEvent& event) {
    using Command = FloatingViewController::FieldCommand;
    const bool down = event.key() == Qt::Key_Down;
    const bool isPlain = !(event.modifiers() & ~Qt::KeypadModifier);
    if ((!down && event.key() != Qt::Key_Up) || !isPlain || watched == &command_->field() ||
        !list_->showsRows())
        return false;
    focusCommandField();
    controller_->fieldCommand(down ? Command::moveDown : Command::moveUp, false);
    return true;
}

void FloatingView::focusMoved(QWidget& widget, Qt::FocusReason reason) {
    std::optional<std::int64_t> focused;
    if (&widget == &command_->field())
        focused = FloatingViewController::kCommandField;
    for (BracketField* field : list_->form().fields())
        if (&field->edit() == &widget)
            focused = field->id();
    // What is typed next replaces a blank, unless the pointer or the window's return has put the caret there.
    const bool keepsCaret = reason == Qt::MouseFocusReason || reason == Qt::ActiveWindowFocusReason ||
                            reason == Qt::PopupFocusReason;
    if (focused && *focused != FloatingViewController::kCommandField && !keepsCaret)
        static_cast<PanelTextEdit&>(widget).selectEverything();
    // A request for the field stays in force for a moment, in which any change would serve it again.
    if (focused != FloatingViewController::kCommandField &&
        (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::MouseFocusReason))
        controller_->focusChosen();
    followedFocus_ = focused;
    if (controller_->_focusField.get() != focused)
        controller_->_focusField = focused;
}

void FloatingView::focusCommandField() {
    if (command_->field().isHidden()) {
        // Behind a form; one without a blank has nothing else to take the keys.
        if (list_->form().fields().empty())
            setFocus(Qt::OtherFocusReason);
        return;
    }
    command_->field().setFocus(Qt::OtherFocusReason);
    followedFocus_ = FloatingViewController::kCommandField;
    if (controller_->_focusField.get() != followedFocus_)
        controller_->_focusField = followedFocus_;
}

void FloatingView::followFocusField() {
    const std::optional<std::int64_t> wanted = controller_->_focusField;
    if (!wanted)
        return;
    if (*wanted == FloatingViewController::kCommandField) {
        if (wanted != followedFocus_)
            focusCommandField();
        return;
    }
    BracketField* field = list_->form().fieldFor(*wanted);
    if (!field || (wanted == followedFocus_ && window()->focusWidget() == &field->edit()))
        return;
    followedFocus_ = wanted;
    field->edit().setFocus(Qt::OtherFocusReason);
    field->edit().selectEverything();
    const int top = field->y() + list_->form().y();
    list_->scrollView().reveal(top, top + field->height());
}

void FloatingView::announceChanges() {
    spoken_.follow(controller_->model()._isLoading, controller_->model()._error);
}

std::unique_ptr<FloatingView> makeFloatingView(std::shared_ptr<FloatingViewController> controller,
                                               FloatingViewOptions options) {
    // Before the first widget names itself, which makes what represents it.
    installPanelAccessibility();
    return std::make_unique<FloatingView>(std::move(controller), std::move(options));
}

} // namespace quillmoth
