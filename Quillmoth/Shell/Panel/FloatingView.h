#pragma once

#include "Foundation/Qt/Symbols.h"
#include "Quillmoth/Assistant/FloatingViewController.h"
#include "Quillmoth/Shell/Panel/BottomBar.h"
#include "Quillmoth/Shell/Panel/CommandArea.h"
#include "Quillmoth/Shell/Panel/FrameClock.h"
#include "Quillmoth/Shell/Panel/LinkNote.h"
#include "Quillmoth/Shell/Panel/ListArea.h"
#include "Quillmoth/Shell/Panel/NoticeLine.h"
#include "Quillmoth/Shell/Panel/PanelContent.h"
#include "Quillmoth/Shell/Panel/SpokenStatus.h"

namespace quillmoth {

struct FloatingViewOptions {
    MessageServices messages;
    /// The length of a display frame: the view follows the model at most once in it.
    int frameMilliseconds = 16;
};

/// The whole content of the panel. It holds no state of the assistant: it draws what the controller says and
/// hands it the user's keys and clicks.
class FloatingView final : public PanelContent {
public:
    FloatingView(std::shared_ptr<FloatingViewController> controller, FloatingViewOptions options);

    void setPanelActive(bool active) override;
    [[nodiscard]] QSize leastSize() const override;
    [[nodiscard]] QSize naturalSize() const override;

    /// Takes all changes of the model over now, rather than at the next frame.
    void refresh();

    [[nodiscard]] CommandArea& commandArea() const { return *command_; }

    [[nodiscard]] ListArea& listArea() const { return *list_; }

    [[nodiscard]] NoticeLine& notice() const { return *notice_; }

    [[nodiscard]] LinkNote& linkNote() const { return *note_; }

    [[nodiscard]] BottomBar& bottomBar() const { return *bar_; }

    /// Refreshes so far; tests watch that a stream costs one a frame.
    [[nodiscard]] int refreshCount() const { return refreshCount_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    [[nodiscard]] MessageServices withNote(MessageServices services);
    void observe();
    void watch(QWidget& widget);
    void watchFormFields();
    void place();
    [[nodiscard]] int noticeHeight() const;
    void followHeights();
    void placeAndTell();
    bool handleKey(QObject* watched, const QKeyEvent& event);
    bool copySelection(QObject* watched);
    bool scrollByKey(const QKeyEvent& event);
    bool moveInRows(const QObject* watched, const QKeyEvent& event);
    void typeIntoField(const QKeyEvent& event);
    void focusMoved(QWidget& widget, Qt::FocusReason reason);
    void focusCommandField();
    void followFocusField();
    void announceChanges();

    std::shared_ptr<FloatingViewController> controller_;
    LinkNote* note_;
    CommandArea* command_;
    NoticeLine* notice_;
    ListArea* list_;
    BottomBar* bar_;
    SpokenStatus spoken_{*this};
    FrameClock clock_;
    std::optional<std::int64_t> followedFocus_;
    std::vector<BracketField*> watchedFields_;
    bool appeared_ = false;
    bool active_ = true;
    int refreshCount_ = 0;
    int wantedCommandHeight_ = 0;
    int placedNoticeHeight_ = 0;
    Subscription updates_;
    Subscription fieldFocus_;
    Subscription presetScroll_;
    Subscription historyScroll_;
};

[[nodiscard]] std::unique_ptr<FloatingView>
makeFloatingView(std::shared_ptr<FloatingViewController> controller, FloatingViewOptions options = {});

} // namespace quillmoth
