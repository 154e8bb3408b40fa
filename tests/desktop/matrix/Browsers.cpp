#include "tests/desktop/matrix/Fields.h"

#include <fstream>
#include <linux/input-event-codes.h>
#include <stdexcept>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

std::string paragraphs(const std::string& element, const std::string& attributes = {}) {
    std::string html;
    for (const std::string& line : documentLines())
        html += "<" + element + attributes + ">" + line + "</" + element + ">";
    return html;
}

/// A page that puts the focus and, where keys cannot, the selection where they are wanted, and tells so in
/// its title: F2 the next sample in an input, F4 the text area, F8 what can be edited, F9 the next sample of
/// the page, Pause the password.
std::string page() {
    std::string inputs;
    for (const std::size_t line : {0, 1, 4})
        inputs += "<input size=40 value=\"" + documentLines()[line] + "\">";
    return R"(<!doctype html><meta charset="utf-8"><title>start</title>
<div id="page">)" +
           paragraphs("p") + R"(</div>)" + inputs + R"(<textarea rows="7" cols="40">)" + sampleDocument() +
           R"(</textarea><div id="edit" contenteditable>)" + paragraphs("div") +
           R"(</div><input id="secret" type="password" value="secret">
<script>
let next = {F2: -1, F9: -1}, count = 0;
const ranges = [[0, 0], [1, 1], [2, 3], [4, 4]], inputs = [0, 1, 3];
const actions = {
    F2() { const all = document.querySelectorAll("input[size]"), one = ++next.F2 % all.length;
           all[one].focus(); all[one].select(); return inputs[one]; },
    F4() { document.querySelector("textarea").focus(); return 0; },
    F8() { document.getElementById("edit").focus(); return 0; },
    F9() { const lines = document.querySelectorAll("#page p"), one = ++next.F9 % 4;
           document.activeElement.blur(); const range = document.createRange();
           range.setStart(lines[ranges[one][0]].firstChild, 0);
           const last = lines[ranges[one][1]].firstChild; range.setEnd(last, last.length);
           getSelection().removeAllRanges(); getSelection().addRange(range); return one; },
    Pause() { const field = document.getElementById("secret"); field.focus(); field.select(); return 0; }};
document.addEventListener("keydown", event => {
    if (!actions[event.key]) return;
    event.preventDefault();
    document.title = event.key + " " + actions[event.key]() + " " + ++count; });
document.title = "ready 0";
</script>)";
}

/// Presses a key that the page knows until the title says that it has done what is wanted.
void pressForPage(CapturingDesktop& desktop, int key, const std::string& wanted) {
    const auto title = [&] { return desktop.session().frontTitle().value_or(""); };
    constexpr int kPressLimit = 12;
    for (int press = 0; press < kPressLimit; ++press) {
        const std::string before = title();
        desktop.input().tapKey(key);
        waitFor([&] { return title() != before; }, 3s);
        if (title().starts_with(wanted))
            return;
    }
    throw std::runtime_error("the page does not answer with " + wanted);
}

std::vector<Field> pageFields(CapturingDesktop& desktop, const std::string& browser) {
    const auto lines = documentLines();
    const auto inside = [&desktop](int key, const std::string& name) {
        return [&desktop, key, name](std::size_t sample) {
            pressForPage(desktop, key, name);
            selectLinesOfSample(desktop.input(), sample);
        };
    };
    const auto byPage = [&desktop](int key, const std::string& name) {
        return [&desktop, key, name](std::size_t sample) {
            pressForPage(desktop, key, name + " " + std::to_string(sample));
        };
    };
    return {
        {browser + ", page text", documentSamples(), byPage(KEY_F9, "F9"), Field::Kind::readOnly},
        {browser + ", input",
         {lines[0], lines[1], "", lines[4]},
         byPage(KEY_F2, "F2"),
         Field::Kind::singleLine},
        {browser + ", textarea", documentSamples(), inside(KEY_F4, "F4"), Field::Kind::editor},
        {browser + ", contenteditable", documentSamples(), inside(KEY_F8, "F8"), Field::Kind::editor},
        {browser + ", password", {"secret"}, byPage(KEY_PAUSE, "Pause"), Field::Kind::secret},
    };
}

RunningProgram openBrowser(CapturingDesktop& desktop, const std::string& name,
                           std::vector<std::string> command) {
    const std::string path = desktop.session().homeDirectory() + "/page.html";
    std::ofstream(path, std::ios::binary) << page();
    command.push_back("file://" + path);
    RunningProgram program{openTitled(desktop, command, "ready 0"), pageFields(desktop, name)};
    // It goes on starting when its page is there already.
    letPass(3s);
    return program;
}

RunningProgram openChromium(CapturingDesktop& desktop) {
    const std::string profile = freshFolder(desktop, "chromium");
    return openBrowser(desktop, "Chromium",
                       {"chromium", "--no-sandbox", "--no-first-run", "--disable-gpu",
                        "--password-store=basic", "--user-data-dir=" + profile});
}

RunningProgram openFirefox(CapturingDesktop& desktop) {
    const std::string profile = freshFolder(desktop, "firefox");
    std::ofstream(profile + "/user.js")
        << "user_pref('browser.aboutwelcome.enabled', false);\n"
           "user_pref('datareporting.policy.dataSubmissionEnabled', false);\n"
           "user_pref('browser.shell.checkDefaultBrowser', false);\n"
           "user_pref('browser.startup.homepage_override.mstone', 'ignore');\n"
           "user_pref('browser.tabs.warnOnClose', false);\n"
           "user_pref('toolkit.startup.max_resumed_crashes', -1);\n";
    return openBrowser(desktop, "Firefox", {"firefox-esr", "--no-remote", "--profile", profile});
}

} // namespace

std::vector<ProgramKind> webPrograms() {
    return {{.name = "Chromium", .executable = "chromium", .open = openChromium},
            {.name = "Firefox", .executable = "firefox-esr", .open = openFirefox}};
}

} // namespace quillmoth::test
