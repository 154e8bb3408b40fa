// Draws every state of the panel into PNG files, at the scale of QT_SCALE_FACTOR. Needs no display.
// Usage: panel-gallery --output FOLDER

#include "LampPicture.h"
#include "Quillmoth/Highlighting/SplashCodeSyntaxHighlighter.h"
#include "Quillmoth/Shell/Panel/MessageContent.h"
#include "Quillmoth/Shell/Panel/MessagePalette.h"
#include "tests/unit/shell/PanelFixture.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFontDatabase>
#include <QMouseEvent>
#include <QPainter>
#include <QTemporaryFile>

#include <cstdio>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>

namespace quillmoth {

namespace {

std::vector<PromptData> presets() {
    return {
        makePreset("📣", "Call to action",
                   "Create a compelling CTA for our [landing page/email/website] that encourages [target "
                   "audience] to [desired action].",
                   "nonContext"),
        makePreset("📧", "Write an email", "e", "nonContext"),
        makePreset("💡", "Brainstorm ideas", "b", "nonContext"),
        makePreset("🗓️", "Plan my week", "w", "nonContext"),
        makePreset("🍳", "Recipe from ingredients", "r", "nonContext"),
        makePreset("🌐", "Translate to English", "t"),
        makePreset("✍️", "Make it a trustworthy introduction", "t"),
        makePreset("🔀", "Transform into bullet points", "t"),
    };
}

const char* const kAnswer =
    "A moth finds its way by keeping a distant light at a **constant angle**. That works well with the moon, "
    "which hardly moves as the insect flies.\n\nWith a lamp it fails: the angle changes at every wing beat, "
    "so "
    "the moth keeps turning toward the light and spirals in. Three things make it worse:\n\n1. The lamp is "
    "close, so the angle chan";

const char* const kLongAnswer = "# Debouncing a field\n\nWait until the typing **pauses** before you call "
                                "`search(_:)`, so that a *burst* of keys costs "
                                "one request. More in [the guide](https://example.org).\n\n## How it "
                                "works\n\n- Keep the task that is waiting\n- "
                                "Cancel it on each key\n    - the old one never reaches the "
                                "server\n\n```swift\nfinal class Debouncer {\n    private "
                                "var task: Task<Void, Never>?\n    let delay = "
                                "Duration.milliseconds(250)\n}\n```\n\n### Pick a delay\n\n| Delay | Feels | "
                                "Requests |\n|---|---|--:|\n| 100 ms | immediate | 41 |\n| 250 ms | calm | 9 "
                                "|\n\n- [x] Cancel the task in `deinit`\n- "
                                "[ ] Test with a fake clock\n\n> A short wait that is always the same is "
                                "felt less than a shorter one that varies.\n";

class Gallery {
public:
    Gallery(QString folder, markdown::MarkdownServices& services)
        : folder_(std::move(folder)), services_(services) {}

    void draw(const QString& name, const std::function<void(PanelUnderTest&)>& arrange,
              QSize size = {612, 410}) {
        PanelUnderTest panel(presets(), {.messages = {.markdown = &services_, .openLink = {}}});
        panel.model->_status = std::string("No selection");
        panel.open();
        panel.surface().setFrame(QRect(QPoint(0, 0), size));
        panel.view->commandArea().field().setFocus();
        arrange(panel);
        panel.settle();
        letAnimationsEnd();
        save(name, panel.surface());
    }

    /// Pictures that could not be written.
    [[nodiscard]] int failures() const { return failures_; }

private:
    static void letAnimationsEnd() {
        QElapsedTimer time;
        time.start();
        while (time.elapsed() < 200)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }

    void save(const QString& name, PanelSurface& surface) {
        const double scale = surface.devicePixelRatioF();
        constexpr int kMargin = 40;
        QImage picture((surface.size() + QSize(2 * kMargin, 2 * kMargin)) * scale,
                       QImage::Format_ARGB32_Premultiplied);
        picture.setDevicePixelRatio(scale);
        picture.fill(QColor(0xD5, 0xD6, 0xDE));
        QPainter painter(&picture);
        if (!surface.mask().isEmpty())
            painter.setClipRegion(surface.mask().translated(kMargin, kMargin));
        painter.drawPixmap(kMargin, kMargin, surface.grab());
        painter.end();
        const QString path = QDir(folder_).filePath(name + QStringLiteral(".png"));
        const bool saved = picture.save(path);
        failures_ += saved ? 0 : 1;
        std::printf("%s %s\n", saved ? "wrote" : "could not write", qPrintable(path));
    }

    QString folder_;
    markdown::MarkdownServices& services_;
    int failures_ = 0;
};

void converse(PanelUnderTest& panel, const std::string& question, const std::string& answer) {
    panel.model->_messages = {
        {"S", "system", "You're a helpful assistant!"}, {"U", "user", question}, {"A", "assistant", answer}};
    panel.model->_responseValue = answer;
}

void remember(PanelUnderTest& panel) {
    std::vector<oldMessagesStruct> stored;
    for (const char* topic :
         {"🦋 Why moths fly to lamps", "⌛ Debouncing a search field in Swift", "🌍 Trip to Rome in October",
          "🥖 Sourdough with a cold kitchen", "📨 Reply to the landlord", "😀 Chat: 2024-03-09 17:42",
          "🎻 Programme notes for a string trio", "🔭 Where to see the comet", "A topic without a picture"})
        stored.push_back({.topic = topic, .message = {}, .created = 0});
    panel.model->_oldMessages = stored;
    panel.model->_openHistory = true;
    panel.model->_keyHistorySelected = 1;
    panel.model->_keyHistoryHover = 3;
}

void openForm(PanelUnderTest& panel) {
    panel.settle();
    panel.model->_selectedIndex = 0;
    panel.model->runPrompt();
    panel.settle();
    panel.controller->formFieldEdited(3, "people who write every day");
    panel.controller->_focusField = 3;
}

const char* const kThanks =
    "Dear Ms Okafor, thank you for your patience. The repaired instrument left our workshop this "
    "morning and will reach you on **Thursday**.";

void pin(PanelUnderTest& panel) {
    converse(panel, "Write a short, warm note about the late delivery.", kThanks);
    panel.model->_isOnTopBinding = true;
}

void drawLists(Gallery& gallery) {
    gallery.draw(QStringLiteral("list-no-context"), [](PanelUnderTest& panel) {
        panel.settle();
        panel.model->_hoverIndex = 2;
    });
    gallery.draw(QStringLiteral("list-context-search"), [](PanelUnderTest& panel) {
        panel.model->_isContext = true;
        panel.model->_status = std::string("Context found press esc to remove context");
        panel.model->_command = std::string("tr");
        panel.settle();
        panel.model->_selectedIndex = 5;
        panel.model->_hoverIndex = 7;
    });
    gallery.draw(QStringLiteral("list-context"), [](PanelUnderTest& panel) {
        panel.model->_isContext = true;
        panel.model->_status = std::string("Context found press esc to remove context");
        panel.model->refreshList();
    });
    gallery.draw(QStringLiteral("error-accessibility"), [](PanelUnderTest& panel) {
        panel.platform.accessibility.isTrusted = false;
        panel.platform.accessibility.systemWide().fail("AXFocusedUIElement", -25211);
        panel.model->captureContext();
    });
    gallery.draw(QStringLiteral("error"), [](PanelUnderTest& panel) {
        panel.model->_error = std::string("Error 401: Your API key is invalid, Please check again.");
    });
    gallery.draw(QStringLiteral("long-names"), [](PanelUnderTest& panel) {
        PromptModel& presets = *panel.model->_PromptM.get();
        presets.edit(0, [](auto& preset) {
            preset.name =
                "A name that goes on and on and on, far beyond what any row of the panel could show at once";
        });
        presets.edit(1, [](auto& preset) {
            preset.name =
                "Rindfleischetikettierungsüberwachungsaufgabenübertragungsgesetzesentwurfsbegründungstext";
        });
        presets.edit(2, [](auto& preset) { preset.emoji = "Ab"; });
    });
    gallery.draw(QStringLiteral("right-to-left"), [](PanelUnderTest& panel) {
        panel.model->_PromptM.get()->edit(0, [](auto& preset) { preset.name = "دعوة إلى العمل"; });
        converse(panel, "لماذا يطير العث إلى المصابيح؟",
                 "يحافظ العث على زاوية ثابتة مع ضوء بعيد. مع المصباح يفشل ذلك، فيدور حوله مرة بعد مرة.");
    });
    gallery.draw(QStringLiteral("narrow"),
                 [](PanelUnderTest& panel) {
                     panel.model->_status = std::string("Context found press esc to remove context");
                 },
                 {300, 290});
    gallery.draw(QStringLiteral("tall-command"), [](PanelUnderTest& panel) {
        std::string text = ":";
        for (int line = 1; line < 16; ++line)
            text += "Line " + std::to_string(line) + " of a long command\n";
        panel.model->_command = text;
    });
    gallery.draw(QStringLiteral("three-lines"), [](PanelUnderTest& panel) {
        panel.model->_command = std::string("Rewrite this\nin three lines 🦋\nwith care");
    });
    gallery.draw(QStringLiteral("no-compositor"), [](PanelUnderTest& panel) {
        panel.compositing = false;
        panel.panel().orderFront();
    });
}

void drawConversations(Gallery& gallery) {
    gallery.draw(QStringLiteral("streaming"),
                 [](PanelUnderTest& panel) {
                     converse(panel, "Why do moths fly to lamps?", kAnswer);
                     panel.model->_isLoading = true;
                 },
                 {612, 560});
    gallery.draw(QStringLiteral("waiting"), [](PanelUnderTest& panel) {
        converse(panel, "Why do moths fly to lamps?", "");
        panel.model->_responseValue = std::string();
        panel.model->_isLoading = true;
    });
    gallery.draw(QStringLiteral("large-font"), [](PanelUnderTest& panel) {
        panel.platform.userDefaults.set("saveFontSize", 28.0);
        converse(panel, "Why do moths fly to lamps?", kAnswer);
    });
    gallery.draw(QStringLiteral("conversation"),
                 [](PanelUnderTest& panel) {
                     converse(panel, "How do I debounce a search field in Swift?", kLongAnswer);
                 },
                 {612, 1100});
    gallery.draw(QStringLiteral("answer-not-taken"), [](PanelUnderTest& panel) {
        converse(panel, "Why do moths fly to lamps?", kAnswer);
        panel.controller->_notice =
            std::string("Kate did not take the answer. It is on the clipboard: paste it with Ctrl+V.");
    });
    gallery.draw(QStringLiteral("answer-not-taken-terminal"), [](PanelUnderTest& panel) {
        converse(panel, "Why do moths fly to lamps?", kAnswer);
        panel.controller->_notice = std::string("Xfce4-terminal is a terminal, which would run the lines of "
                                                "the answer. It is on the clipboard, for you to paste.");
    });
    gallery.draw(QStringLiteral("pinned"), pin);
    gallery.draw(QStringLiteral("pinned-inactive"), [](PanelUnderTest& panel) {
        pin(panel);
        panel.settle();
        panel.platform.panelFocus.turn(platform::PanelFocus::Turn::pressedElsewhere);
    });
    gallery.draw(QStringLiteral("history"), remember);
    gallery.draw(QStringLiteral("history-empty"),
                 [](PanelUnderTest& panel) { panel.model->_openHistory = true; });
    gallery.draw(QStringLiteral("form"), openForm);
    gallery.draw(QStringLiteral("form-second-opening"), [](PanelUnderTest& panel) {
        openForm(panel);
        panel.settle();
        panel.controller->backClicked();
        openForm(panel);
    });
}

/// An answer with an image that cannot be had at first, before and after the conversation is opened again.
/// Gives the pictures that could not be written.
int drawImageAtSecondTry(const QString& folder) {
    std::chrono::steady_clock::time_point now;
    bool isServerUp = false;
    markdown::MarkdownServices services(
        messagePalette(), nullptr,
        {.download =
             [&isServerUp](const markdown::ImageRequest&, const auto& finished) {
                 finished({isServerUp ? lampPicture() : QByteArray()});
             },
         .permissions = {.loadsAll = [] { return true; }},
         .clock = [&now] { return now; }});
    Gallery gallery(folder, services);
    const auto openConversation = [&services](PanelUnderTest& panel) {
        converse(panel, "Draw the way of a moth around a lamp.",
                 "Here it is:\n\n![The way of a moth](https://example.org/moth.png)\n\nEach turn is *closer* "
                 "than the one before.");
        panel.settle();
        panel.surface().grab();
        while (services.images.loadingCount() > 0)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    };
    gallery.draw(QStringLiteral("image-failed"), openConversation);
    now += markdown::DefaultImageLoader::kRetryPause;
    isServerUp = true;
    gallery.draw(QStringLiteral("image-at-second-try"), openConversation);
    return gallery.failures();
}

/// An answer whose images wait for a click: one that is new, one that has failed, one in a line of text.
/// Gives the pictures that could not be written.
int drawImageNotLoaded(const QString& folder) {
    markdown::MarkdownServices services(
        messagePalette(), nullptr,
        {.download = [](const markdown::ImageRequest&, const auto& finished) { finished({}); },
         .permissions = {.allow = [](const std::string&) {}}});
    Gallery gallery(folder, services);
    gallery.draw(QStringLiteral("image-not-loaded"), [&services](PanelUnderTest& panel) {
        converse(panel, "Draw the way of a moth around a lamp.",
                 "Here it is:\n\n![The way of a moth](https://pictures.example.org/moth.png)\n\nEach turn is "
                 "*closer* than the one before: ![turns](https://pictures.example.org/turns.png) as this "
                 "shows.\n\n![A lamp](https://lamps.example.net/lamp.jpeg)");
        panel.settle();
        panel.surface().grab();
        services.images.load("https://lamps.example.net/lamp.jpeg");
        while (services.images.loadingCount() > 0)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    });
    return gallery.failures();
}

} // namespace

} // namespace quillmoth

namespace {

/// The fonts that the pictures are compared in, whatever this desktop prefers.
constexpr const char* kFonts = R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig>
  <include ignore_missing="yes">/etc/fonts/fonts.conf</include>
  <alias binding="strong"><family>sans-serif</family><prefer><family>Inter</family></prefer></alias>
  <alias binding="strong"><family>Sans</family><prefer><family>Inter</family></prefer></alias>
  <alias binding="strong"><family>monospace</family><prefer><family>JetBrains Mono</family></prefer></alias>
</fontconfig>
)";

std::optional<QString> folderFrom(int argumentCount, char** arguments) {
    if (argumentCount != 3 || std::string_view(arguments[1]) != "--output")
        return std::nullopt;
    return QString::fromLocal8Bit(arguments[2]);
}

} // namespace

int main(int argumentCount, char** arguments) {
    const auto folder = folderFrom(argumentCount, arguments);
    if (!folder) {
        std::fputs("Usage: panel-gallery --output FOLDER\n", stderr);
        return 2;
    }
    QTemporaryFile fonts;
    if (fonts.open() && fonts.write(kFonts) > 0 && fonts.flush())
        qputenv("FONTCONFIG_FILE", fonts.fileName().toLocal8Bit());
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argumentCount, arguments);
    QDir().mkpath(*folder);
    constexpr double kCodeFontSize = 16;
    const quillmoth::highlighting::SplashCodeSyntaxHighlighter highlighter(
        quillmoth::highlighting::Theme::midnight(quillmoth::highlighting::Font(kCodeFontSize)));
    quillmoth::markdown::MarkdownServices services(quillmoth::messagePalette(), &highlighter);
    quillmoth::Gallery gallery(*folder, services);
    quillmoth::drawLists(gallery);
    quillmoth::drawConversations(gallery);
    const int failures = gallery.failures() + quillmoth::drawImageAtSecondTry(*folder) +
                         quillmoth::drawImageNotLoaded(*folder);
    return failures == 0 ? 0 : 1;
}
