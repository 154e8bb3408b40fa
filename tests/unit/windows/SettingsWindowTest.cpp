#include "Quillmoth/Settings/ImageSettings.h"
#include "Quillmoth/Settings/Recording.h"
#include "Quillmoth/Shell/Controls/Labels.h"
#include "Quillmoth/Shell/Controls/Switch.h"
#include "Quillmoth/Shell/Editor/PromptEditorWindow.h"
#include "Quillmoth/Shell/Looks/OwnKeys.h"
#include "Quillmoth/Shell/Windows/KeyFlags.h"
#include "Quillmoth/Shell/Windows/MainMenu.h"
#include "Quillmoth/Shell/Windows/ModelPicker.h"
#include "Quillmoth/Shell/Windows/ShortcutPainter.h"
#include "tests/unit/windows/WindowFixture.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

namespace quillmoth {
namespace {

using KeyboardShortcuts::Key;
using KeyboardShortcuts::kFlagCommand;
using KeyboardShortcuts::kFlagOption;
using KeyboardShortcuts::Shortcut;

class SettingsWindowTest : public testing::Test, public WindowFixture {
protected:
    SettingsWindowTest() { open(); }

    void open() {
        settings = makeSettings();
        settings->present();
        fakes.runUntilIdle();
        activate(*settings);
        recorder = dynamic_cast<RecorderCocoa*>(field("Open Quillmoth Hotkey:"));
    }

    static void activate(QWidget& window) {
        window.activateWindow();
        QApplication::processEvents();
    }

    template<class Widget>
    Widget* named(const char* name) {
        for (QWidget* child : settings->findChildren<QWidget*>()) {
            auto* widget = dynamic_cast<Widget*>(child);
            if (widget != nullptr && widget->accessibleName() == QString::fromUtf8(name))
                return widget;
        }
        return nullptr;
    }

    QLineEdit* field(const char* name) { return named<QLineEdit>(name); }

    QPushButton* button(const char* title) { return buttonOf(*settings, QString::fromUtf8(title)); }

    bool shows(const char* text) {
        for (auto* label : settings->findChildren<QLabel*>()) {
            const auto* toned = dynamic_cast<const ToneLabel*>(label);
            if (toned != nullptr && toned->isVisible() && toned->plainText() == QString::fromUtf8(text))
                return true;
        }
        return false;
    }

    /// As the keyboard sends it, with the scan code of the key.
    void press(int key, Qt::KeyboardModifiers modifiers, std::uint32_t scanCode) {
        QWidget* target =
            QApplication::focusWidget() != nullptr ? QApplication::focusWidget() : settings.get();
        QKeyEvent override(QEvent::ShortcutOverride, key, modifiers, scanCode, 0, 0);
        QApplication::sendEvent(target, &override);
        QKeyEvent press(QEvent::KeyPress, key, modifiers, scanCode, 0, 0);
        QApplication::sendEvent(target, &press);
    }

    std::optional<Shortcut> stored() { return shortcuts.getShortcut(name); }

    QMessageBox* alert() { return settings->findChild<QMessageBox*>(); }

    std::unique_ptr<SettingsWindow> settings;
    RecorderCocoa* recorder = nullptr;
};

TEST_F(SettingsWindowTest, APressedShortcutIsStoredShownAndEndsTheRecording) {
    recorder->setFocus();
    EXPECT_TRUE(shortcuts.recordingPause());
    EXPECT_EQ(recorder->prompt(), "Press shortcut…");
    press(Qt::Key_Control, Qt::ControlModifier, 37);
    EXPECT_TRUE(recorder->isRecording());
    press(Qt::Key_K, Qt::ControlModifier | Qt::AltModifier, 45);
    EXPECT_EQ(stored(), Shortcut(Key::k, kFlagCommand | kFlagOption));
    EXPECT_EQ(recorder->text(), "⌥⌘K");
    EXPECT_EQ(recorder->accessibleDescription(), "Ctrl+Alt+K");
    EXPECT_TRUE(recorder->hasClearButton());
    EXPECT_FALSE(shortcuts.recordingPause());
    EXPECT_EQ(recorder->prompt(), "Record shortcut");
}

TEST_F(SettingsWindowTest, ANewWindowDoesNotRecordByItself) {
    EXPECT_FALSE(recorder->isRecording());
    EXPECT_EQ(recorder->focusPolicy(), Qt::StrongFocus);
    settings = makeSettings();
    settings->present();
    recorder = dynamic_cast<RecorderCocoa*>(field("Open Quillmoth Hotkey:"));
    EXPECT_EQ(recorder->focusPolicy(), Qt::NoFocus);
}

TEST_F(SettingsWindowTest, TheSpaceBarsSignIsDrawnOnTheBaseLineInTheTextsColourWhateverTheFontHas) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        QImage image(QSize(130, 28) * scale, QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setFont(recorder->font());
        painter.setPen(Qt::red);
        drawShortcutText(painter, QRectF(0, 0, 130, 28), "⎵");
        QRect drawn;
        for (int place = 0; place < image.width() * image.height(); ++place) {
            const QPoint pixel(place % image.width(), place / image.width());
            if (image.pixelColor(pixel) == Qt::white)
                continue;
            ASSERT_EQ(image.pixelColor(pixel), Qt::red) << scale;
            drawn |= QRect(pixel, QSize(1, 1));
        }
        const QFontMetricsF metrics(recorder->font());
        const double baseLine = 14 + (metrics.ascent() - metrics.descent()) / 2;
        EXPECT_NEAR(drawn.bottom() + 1, baseLine * scale, 1) << scale;
        EXPECT_NEAR(drawn.center().x(), 65 * scale, 1.5) << scale;
        EXPECT_NEAR(drawn.width(), 9 * scale, 1.5) << scale;
        EXPECT_EQ(image.pixelColor(drawn.center().x(), drawn.top()), Qt::white) << "it is open above";
    }
}

TEST_F(SettingsWindowTest, BackspaceClearsAndGoesOnRecording) {
    shortcuts.setShortcut(Shortcut(Key::space, kFlagOption), name);
    EXPECT_EQ(recorder->text(), "⌥⎵");
    auto* clear = recorder->findChild<QToolButton*>();
    EXPECT_EQ(clear->accessibleName(), "Clear shortcut");
    clear->click();
    EXPECT_FALSE(stored());
    shortcuts.setShortcut(Shortcut(Key::space, kFlagOption), name);
    EXPECT_TRUE(recorder->isReadOnly());
    recorder->setFocus();
    press(Qt::Key_Backspace, {}, 22);
    EXPECT_FALSE(stored());
    EXPECT_TRUE(recorder->isRecording());
    EXPECT_FALSE(recorder->hasClearButton());
}

TEST_F(SettingsWindowTest, EscapeEndsRecordingAndTabMovesOn) {
    recorder->setFocus();
    press(Qt::Key_Escape, {}, 9);
    EXPECT_FALSE(recorder->isRecording());
    EXPECT_TRUE(settings->isVisible());
    recorder->setFocus();
    press(Qt::Key_Escape, {}, 0);
    EXPECT_FALSE(recorder->isRecording()) << "where no key has a position";
    recorder->setFocus();
    press(Qt::Key_Tab, {}, 23);
    EXPECT_FALSE(recorder->isRecording());
    EXPECT_EQ(QApplication::focusWidget(), named<Switch>("Launch at login 😀"));
}

TEST_F(SettingsWindowTest, ALeftOrRightClickEndsRecordingUnlessItIsWithinThreePixelsOfTheField) {
    QWidget* row = recorder->parentWidget();
    const auto recordsAfter = [&](Qt::MouseButton button, int distance) {
        recorder->setFocus();
        QTest::mouseClick(row, button, {}, recorder->geometry().topLeft() - QPoint(distance, -5));
        return recorder->isRecording();
    };
    EXPECT_TRUE(recordsAfter(Qt::LeftButton, 3));
    EXPECT_FALSE(recordsAfter(Qt::LeftButton, 5));
    EXPECT_FALSE(recordsAfter(Qt::RightButton, 5));
    EXPECT_TRUE(recordsAfter(Qt::MiddleButton, 5));
}

TEST_F(SettingsWindowTest, WhereNoHotKeyCanBeHadTheSettingsSayWhyAndWhatToDoInstead) {
    const char* bad = "The stored hot key cannot be used. Record another one.";
    EXPECT_FALSE(shows(bad));
    fakes.userDefaults.set(name.defaultsKey(), std::string("no hot key"));
    EXPECT_TRUE(shows(bad));
    fakes.hotKeyCenter.obstacleText = "No X server. Bind “quillmoth --toggle”.";
    open();
    EXPECT_TRUE(shows("No X server. Bind “quillmoth --toggle”."));
}

TEST_F(SettingsWindowTest, AMenuItemsShortcutRaisesAnAlertAndDoesNotAct) {
    recorder->setFocus();
    press(Qt::Key_Q, Qt::ControlModifier, 24);
    EXPECT_TRUE(fakes.application.calls.empty());
    ASSERT_NE(alert(), nullptr);
    EXPECT_TRUE(alert()->text().contains("“Quit”"));
    EXPECT_FALSE(recorder->isRecording());
    alert()->accept();
    activate(*settings);
    EXPECT_TRUE(recorder->isRecording());
    EXPECT_FALSE(stored());
}

TEST_F(SettingsWindowTest, NoKeyThatAWindowOrThePanelAnswersToBecomesTheHotKey) {
    const std::pair<int, std::uint16_t> kNamed[] = {
        {Qt::Key_Return, 36}, {Qt::Key_Enter, 76}, {Qt::Key_Escape, 53}, {Qt::Key_Up, 126},
        {Qt::Key_Down, 125},  {Qt::Key_F9, 101},   {Qt::Key_F10, 109}};
    std::map<int, std::uint16_t> positions(std::begin(kNamed), std::end(kNamed));
    auto& characters = fakes.keyboardLayout.characters;
    characters = {{76, "⌤"}};
    for (const char c : std::string("abcdefghijklmnopqrstuvwxyz0123456789+-=")) {
        const auto code = static_cast<std::uint16_t>(200 + c);
        characters[code] = c;
        positions[std::toupper(c)] = code;
    }
    std::vector<QKeySequence> keys;
    for (const OwnKeyRow& row : ownKeys())
        keys.emplace_back(row.keys);
    for (const auto standard : {QKeySequence::Undo, QKeySequence::Redo, QKeySequence::Cut, QKeySequence::Copy,
                                QKeySequence::Paste, QKeySequence::SelectAll}) {
        const auto bindings = QKeySequence::keyBindings(standard);
        EXPECT_TRUE(std::any_of(bindings.begin(), bindings.end(), [&](const auto& key) {
            return std::count(keys.begin(), keys.end(), key);
        })) << standard;
    }
    PromptEditorWindow editor(DataModel::create(fakes.platform()), fakes.platform(), colorScheme);
    OnboardingWindow onboarding(colorScheme, [] {});
    for (const QWidget* window : std::initializer_list<QWidget*>{settings.get(), &editor, &onboarding}) {
        for (const auto* shortcut : window->findChildren<QShortcut*>())
            keys.push_back(shortcut->key());
    }
    const auto menu = applicationMainMenu(fakes.keyboardLayout);
    for (const QKeySequence& sequence : keys) {
        const QKeyCombination combination = sequence[0];
        const auto position = positions.find(combination.key());
        ASSERT_NE(position, positions.end()) << sequence.toString().toStdString();
        const bool isFunctionKey = combination.key() >= Qt::Key_F1 && combination.key() <= Qt::Key_F35;
        const RecordingStep step = recordingStep(
            {.keyCode = position->second,
             .modifierFlags = keyFlags(combination.keyboardModifiers()),
             .specialKey = isFunctionKey ? SpecialKey::function : SpecialKey::none},
            menu, [](const Shortcut&) { return false; }, fakes.keyboardLayout);
        EXPECT_FALSE(std::holds_alternative<RecordingAccepts>(step)) << sequence.toString().toStdString();
    }
}

TEST_F(SettingsWindowTest, AnEmptiedKeyPutsTheModelBackAndTakesTheWarningAway) {
    auto* key = field("OpenAI API Key:");
    auto* picker = named<ModelPicker>("Model");
    EXPECT_EQ(picker->count(), 1);
    EXPECT_TRUE(shows("Quillmoth is paying for your API usage"));
    key->setFocus();
    QTest::keyClicks(key, " sk");
    EXPECT_EQ(fakes.userDefaults.string("openapikey"), "sk") << "blanks around a key are not kept";
    EXPECT_TRUE(shows("You are using your own key\nMake sure you fill in your key correctly."));
    ASSERT_EQ(picker->count(), 4);
    picker->onChoice("gpt-4-32k");
    const char* warning =
        "Ensure that you're eligible to use GPT-4, otherwise, you will encounter a 404 error.";
    EXPECT_TRUE(shows(warning));
    EXPECT_EQ(picker->currentText(), "gpt-4-32k");
    QTest::keyClicks(key, "2");
    EXPECT_EQ(fakes.userDefaults.string("model"), "gpt-4-32k") << "another key";
    for (int count = 0; count < 4; ++count)
        QTest::keyClick(key, Qt::Key_Backspace);
    EXPECT_EQ(fakes.userDefaults.string("model"), "gpt-3.5-turbo");
    EXPECT_FALSE(shows(warning));
    EXPECT_EQ(picker->count(), 1);
}

TEST_F(SettingsWindowTest, TheKeyCanBeHiddenWithoutBeingChanged) {
    fakes.userDefaults.set("openapikey", std::string("sk"));
    named<QToolButton>("Hide the key")->click();
    EXPECT_EQ(field("OpenAI API Key:")->echoMode(), QLineEdit::Password);
    named<QToolButton>("Show the key")->click();
    EXPECT_EQ(field("OpenAI API Key:")->echoMode(), QLineEdit::Normal);
    EXPECT_EQ(fakes.userDefaults.string("openapikey"), "sk");
}

TEST_F(SettingsWindowTest, WhereThereIsAKeyringTheKeyCanBeKeptInIt) {
    const auto* key = field("OpenAI API Key:");
    const auto boxes = settings->findChildren<QCheckBox*>();
    auto* keyring = *std::find_if(boxes.begin(), boxes.end(), [](const auto* box) {
        return box->text() == "Keep the key in the keyring";
    });
    EXPECT_GT(keyKeeping.looks, 0);
    EXPECT_FALSE(keyring->isVisible());
    keyKeeping.offers = true;
    keyKeeping.tell();
    ASSERT_TRUE(keyring->isVisible());
    keyring->click();
    EXPECT_EQ(keyKeeping.wishes, std::vector{true});
    keyKeeping.problem = "It stays in the settings file.";
    keyKeeping.tell();
    EXPECT_FALSE(keyring->isChecked()) << "the move has failed";
    EXPECT_TRUE(shows("It stays in the settings file."));
    keyKeeping.problem.clear();
    keyKeeping.keeps = true;
    fakes.userDefaults.obstacles["openapikey"] = "The keyring is locked.";
    fakes.userDefaults.set("model", std::string("gpt-4"));
    EXPECT_FALSE(shows("Quillmoth is paying for your API usage"));
    EXPECT_EQ(key->placeholderText(), "In the keyring");
    EXPECT_TRUE(fakes.userDefaults.wanted.empty()) << "the window asks for the password by itself";
    button("Unlock the Keyring")->click();
    EXPECT_EQ(fakes.userDefaults.wanted, std::vector<std::string>{"openapikey"});
    EXPECT_EQ(fakes.userDefaults.string("openapikey"), std::nullopt) << "the empty field has been stored";
}

TEST_F(SettingsWindowTest, TheUpdateButtonWorksOnlyWhileACheckCanStart) {
    QPushButton* check = button("Check for Updates…");
    const auto saysWhyNot = [&](const char* words) {
        return !check->isEnabled() && check->toolTip().contains(words) &&
               check->accessibleDescription() == check->toolTip();
    };
    EXPECT_TRUE(saysWhyNot("No update feed")) << check->toolTip().toStdString();
    fakes.userDefaults.set("updateFeedURL", std::string("feed.example"));
    EXPECT_TRUE(saysWhyNot("“feed.example” is no web address")) << check->toolTip().toStdString();
    fakes.userDefaults.set("updateFeedURL", std::string("https://feed.example/feed.json?channel=1"));
    EXPECT_TRUE(check->isEnabled());
    EXPECT_TRUE(check->toolTip().isEmpty() && check->accessibleDescription().isEmpty());
    check->click();
    EXPECT_TRUE(saysWhyNot("asked")) << check->toolTip().toStdString();
    fakes.urlSessions.shared().lastTask().answer(500, "");
    fakes.runUntilIdle();
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->text(), "Could not check for updates.");
    delete alert();
    check->click();
    fakes.urlSessions.shared().lastTask().answer(200, R"({"version":"1.0.1","url":"https://get.example/"})");
    fakes.runUntilIdle();
    EXPECT_TRUE(check->isEnabled());
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->text(), "Quillmoth 1.0.1 is available.");
    for (auto* choice : alert()->findChildren<QPushButton*>()) {
        if (choice->text().contains("Download"))
            choice->click();
    }
    EXPECT_EQ(fakes.workspace.openedURLs, std::vector<std::string>{"https://get.example/"});
    delete alert();
    check->click();
    fakes.urlSessions.shared().lastTask().answer(200, R"({"version":"1.0.1"})");
    fakes.runUntilIdle();
    EXPECT_EQ(alert()->buttons().size(), 1) << "no page is named that could be opened";
}

TEST_F(SettingsWindowTest, ATestOfTheConnectionShowsItsAnswerAndCanBeRepeated) {
    QPushButton* test = button("Test connection");
    for (int count = 0; count < 2; ++count) {
        test->click();
        EXPECT_FALSE(test->isEnabled());
        fakes.urlSessions.shared().lastTask().answer(503, "");
        fakes.runUntilIdle();
        EXPECT_TRUE(test->isEnabled());
        EXPECT_TRUE(shows("https://api.openai.com answered with an error (503)."));
    }
}

TEST_F(SettingsWindowTest, TheWindowShowsWhatIsStoredAndStoresWhatIsSwitched) {
    EXPECT_TRUE(shows("Version: 1.0 build 1"));
    fakes.userDefaults.set("openapikey", std::string("sk"));
    open();
    EXPECT_EQ(field("OpenAI API Key:")->text(), "sk");
    auto* method = named<Switch>("Use an alternative method to obtain the text");
    EXPECT_FALSE(method->isChecked());
    method->click();
    EXPECT_TRUE(fakes.userDefaults.boolean("useCopyHack", false));
    fakes.userDefaults.set("useCopyHack", false);
    EXPECT_FALSE(method->isChecked());
}

TEST_F(SettingsWindowTest, ImagesLoadWithoutAskingWhereTheUserSaysSo) {
    auto* loads = named<Switch>("Load images in answers without asking");
    EXPECT_FALSE(loads->isChecked());
    loads->click();
    EXPECT_TRUE(fakes.userDefaults.boolean("loadsRemoteImages", false));
    EXPECT_EQ(button("Ask Again for These Hosts"), nullptr);
    ImageSettings images(fakes.userDefaults);
    for (const char* host : {"x.org", "y.org", "x.org", ""})
        images.allow(host);
    EXPECT_EQ(fakes.userDefaults.string("imageHosts"), "x.org y.org");
    EXPECT_TRUE(shows("Always loaded from: x.org, y.org"));
    EXPECT_TRUE(images.loadsFrom("y.org"));
    EXPECT_FALSE(images.loadsFrom("org"));
    button("Ask Again for These Hosts")->click();
    EXPECT_FALSE(images.loadsFrom("x.org"));
    EXPECT_EQ(button("Ask Again for These Hosts"), nullptr);
}

TEST_F(SettingsWindowTest, ButtonsOpenWhatTheyName) {
    button("Open Prompt Editor")->click();
    EXPECT_EQ(editorOpenings, 1);
    button("Tutorial: How to Generate Your Own Key")->click();
    button("quillmoth.example")->click();
    EXPECT_EQ(fakes.workspace.openedURLs,
              (std::vector<std::string>{"https://quillmoth.example/tutorial", "https://quillmoth.example"}));
}

TEST_F(SettingsWindowTest, ALoginItemThatCannotBeMadeLeavesTheSwitchOff) {
    auto* login = named<Switch>("Launch at login 😀");
    login->click();
    EXPECT_TRUE(loginItems.enabled.contains("org.quillmoth.Quillmoth"));
    login->click();
    EXPECT_TRUE(loginItems.enabled.empty());
    settings->hide();
    loginItems.enabled.insert("org.quillmoth.Quillmoth");
    settings->present();
    EXPECT_TRUE(login->isChecked()) << "switched on elsewhere meanwhile";
    login->click();
    loginItems.failure = "no space";
    login->click();
    EXPECT_FALSE(login->isChecked());
}

TEST_F(SettingsWindowTest, ANameOfTheServersOwnModelIsShownThoughThePickerDoesNotOfferIt) {
    auto* model = field("Name of the model on the server");
    model->setFocus();
    model->selectAll();
    QTest::keyClicks(model, "llama3");
    EXPECT_EQ(fakes.userDefaults.string("model"), "llama3");
    EXPECT_EQ(named<ModelPicker>("Model")->placeholderText(), "llama3");
    model->selectAll();
    QTest::keyClick(model, Qt::Key_Delete);
    EXPECT_FALSE(fakes.userDefaults.string("model"));
    EXPECT_EQ(model->text(), "");
}

TEST_F(SettingsWindowTest, AnUnencryptedServerIsAskedAboutAndTheAnswerIsKeptForItAlone) {
    auto* agree = named<QCheckBox>("Send the key all the same");
    EXPECT_FALSE(agree->isVisible());
    field("Server address")->setText("http://relay.example/v");
    EXPECT_TRUE(agree->isVisible());
    EXPECT_TRUE(
        shows("The connection to http://relay.example:80 is not encrypted: others on the way could read "
              "your key and what you write. Until you agree nothing is sent with the key."));
    agree->click();
    EXPECT_EQ(fakes.userDefaults.string("unencryptedKeyOrigins"), "http://relay.example:80");
    field("Server address")->setText("http://other.example");
    EXPECT_TRUE(agree->isVisible());
    EXPECT_FALSE(agree->isChecked());
    field("Server address")->setText("https://relay.example");
    EXPECT_FALSE(agree->isVisible());
    field("Server address")->setText("http://relay.example");
    EXPECT_TRUE(agree->isChecked());
    agree->click();
    EXPECT_FALSE(fakes.userDefaults.object("unencryptedKeyOrigins"));
}

TEST_F(SettingsWindowTest, TheAnswerForAccessibilityCanBeTakenBack) {
    auto* control = named<Switch>("Switch on accessibility for this desktop");
    EXPECT_FALSE(control->isChecked());
    EXPECT_FALSE(fakes.userDefaults.object("accessibilityConsent")) << "showing the switch answers nothing";
    control->click();
    EXPECT_TRUE(fakes.userDefaults.boolean("accessibilityConsent", false));
    EXPECT_TRUE(shows("Please restart afterwards, for they look for it only when they start: Kate, Signal."));
    fakes.userDefaults.set("accessibilityConsent", false);
    EXPECT_FALSE(control->isChecked());
    accessibilityAnswers = false;
    control->click();
    EXPECT_TRUE(shows(kAccessibilityDoesNotAnswer));
    control->click();
    EXPECT_FALSE(fakes.userDefaults.boolean("accessibilityConsent", true));
    EXPECT_TRUE(shows("Quillmoth no longer switches it on. Where it is on now, it stays on."));
}

TEST_F(SettingsWindowTest, EveryControlCanBeReachedByTabAndHasAName) {
    std::set<QWidget*> reached;
    for (int count = 0; count < 30; ++count) {
        QTest::keyClick(QApplication::focusWidget() != nullptr ? QApplication::focusWidget() : settings.get(),
                        Qt::Key_Tab);
        if (auto* focused = QApplication::focusWidget())
            reached.insert(focused);
    }
    for (QWidget* control : reached) {
        const auto* push = qobject_cast<QPushButton*>(control);
        EXPECT_FALSE(control->accessibleName().isEmpty() && (push == nullptr || push->text().isEmpty()))
            << control->metaObject()->className();
    }
    // Recorder, four switches, three buttons that are on, link, three fields, the key's control, picker.
    EXPECT_EQ(reached.size(), 14U);
}

} // namespace
} // namespace quillmoth
