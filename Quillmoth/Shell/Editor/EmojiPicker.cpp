#include "Quillmoth/Shell/Editor/EmojiPicker.h"

#include "Quillmoth/Shell/Controls/WindowStyle.h"
#include "Quillmoth/Shell/Looks/Fonts.h"
#include "Quillmoth/Shell/Looks/Palette.h"
#include "Quillmoth/Shell/Looks/ThinScrollBar.h"

#include <QKeyEvent>
#include <QScreen>

#include <algorithm>
#include <array>
#include <string_view>
#include <unicode/uchar.h>
#include <utility>

namespace quillmoth {

namespace {

constexpr int kCell = 34;
constexpr int kColumns = 10;
constexpr int kRows = 7;
constexpr int kEmojiSize = 18;
constexpr int kFrame = 2;

/// For writing first, then people, nature, things and signs.
// clang-format off
constexpr std::u32string_view kEmoji = U"🪶📝📄📃📑📋📌📎📏📐🔖📚📖📰📓📒📕📗📘📙🗞🔤🔡🔠🔢🔣💬💭🗯📣📢🔔📧📨📩📮📬📦🏷🔍🔎🔑🔒🔓"
                                       U"🔗"
                                       U"🧷"
                                       U"😀😃😄😁😆😅🙂🙃😉😊😇😍🤩😘😎🤓🧐🤔🤨😐😶🙄😏😴🤯😱😡😢🥳🤖👻👽"
                                       U"🧙🧚🧑👩👨👶👍👎👌🤝🙏👏💪👀"
                                       U"🧠"
                                       U"🐶🐱🦊🐻🐼🐨🐯🦁🐸🐵🐔🐧🐦🦉🦇🐺🐴🦄🐝🐛🦋🐌🐞🐢🐍🐙🐬🐳🌵🌲🌳🌴🌱🌿🍀🍁🍂🌷🌸🌹🌻🌞🌙🌟🌈🔥"
                                       U"💧"
                                       U"❄"
                                       U"🍎🍊🍋🍌🍇🍓🍒🍅🥑🥕🌽🍞🧀🍕🍔🍣🍰🍪🍫🍭🍷🍺🍵🍽🚀🚗🚲🚆🛫🗺🏠🏢🏫🏥🏖🎨🎭🎬🎤🎧🎵🎸🎲🎯🎮🏆"
                                       U"🏅🎓🎁"
                                       U"🎉"
                                       U"💡🔧🔨🛠🔩🧩🧪🔬🔭💻🖥📱📷📈📉📊🧮💰💳🧾🗂📅📆⏰⏳🔋🔌🧲🧭🩺💊✂🧹"
                                       U"🧵🔀🔁🔄➕➖✅❌❓❗💯🌐🏁🚩🆕🆗🆘🔝"
                                       U"🔜";

// clang-format on

QString emojiOf(char32_t character) {
    QString emoji = QString::fromUcs4(&character, 1);
    // Signs that are text by themselves take the form of a picture with this.
    if (!u_hasBinaryProperty(static_cast<UChar32>(character), UCHAR_EMOJI_PRESENTATION))
        emoji += QChar(0xFE0F);
    return emoji;
}

/// What the Unicode standard calls it.
QString unicodeName(char32_t character) {
    std::array<char, 80> name{};
    UErrorCode error = U_ZERO_ERROR;
    u_charName(static_cast<UChar32>(character), U_UNICODE_CHAR_NAME, name.data(),
               static_cast<std::int32_t>(name.size()), &error);
    return U_SUCCESS(error) ? QString::fromLatin1(name.data()).toLower() : QString();
}

} // namespace

EmojiPicker* EmojiPicker::open(QWidget& anchor, const QString& current, Choice choose) {
    auto* picker = new EmojiPicker(anchor, current, std::move(choose));
    const QRect place(anchor.mapToGlobal(QPoint(0, anchor.height() + 4)), picker->size());
    const QRect screen = anchor.screen()->availableGeometry();
    picker->move(
        std::clamp(place.x(), screen.left(), std::max(screen.left(), screen.right() - place.width())),
        std::clamp(place.y(), screen.top(), std::max(screen.top(), screen.bottom() - place.height())));
    picker->show();
    picker->setFocus(Qt::PopupFocusReason);
    return picker;
}

EmojiPicker::EmojiPicker(QWidget& anchor, const QString& current, Choice choose)
    : QListWidget(&anchor), choose_(std::move(choose)) {
    setWindowFlags(Qt::Popup);
    setAttribute(Qt::WA_DeleteOnClose);
    setAccessibleName(QStringLiteral("Emoji"));
    applyWindowStyle(this);
    setPalette(menuPalette(anchor.palette()));
    setFont(emojiFont(kEmojiSize));
    setViewMode(IconMode);
    setMovement(Static);
    setResizeMode(Adjust);
    setUniformItemSizes(true);
    setGridSize({kCell, kCell});
    setVerticalScrollBar(new ThinScrollBar(ThinScrollBar::Place::window));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFixedSize(kColumns * kCell + ThinScrollBar::kWidth + 2 * kFrame, kRows * kCell + 2 * kFrame);
    for (const char32_t character : kEmoji) {
        const QString name = unicodeName(character);
        auto* item = new QListWidgetItem(emojiOf(character), this);
        item->setTextAlignment(Qt::AlignCenter);
        item->setSizeHint({kCell, kCell});
        item->setToolTip(name);
        item->setData(Qt::AccessibleTextRole, name);
    }
    const auto marked = findItems(current, Qt::MatchFixedString | Qt::MatchCaseSensitive);
    setCurrentItem(marked.isEmpty() ? item(0) : marked.front());
    connect(this, &QListWidget::itemClicked, this, [this](const QListWidgetItem* item) { take(item); });
}

void EmojiPicker::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        take(currentItem());
    else
        QListWidget::keyPressEvent(event);
}

void EmojiPicker::take(const QListWidgetItem* item) {
    if (item != nullptr)
        choose_(item->text());
    close();
}

} // namespace quillmoth
