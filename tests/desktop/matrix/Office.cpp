#include "tests/desktop/matrix/Fields.h"

#include <filesystem>
#include <fstream>
#include <linux/input-event-codes.h>

namespace quillmoth::test {

namespace {

using namespace std::chrono_literals;

std::string paragraphsOf(const std::string& element) {
    std::string paragraphs;
    for (const std::string& line : documentLines())
        paragraphs += "<" + element + ">" + line + "</" + element + ">";
    return paragraphs;
}

/// A flat document of an office; `kind` is "text" or "spreadsheet".
std::string officeDocument(const std::string& kind, const std::string& body) {
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<office:document xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0"
 xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0"
 xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0"
 office:version="1.2" office:mimetype="application/vnd.oasis.opendocument.)" +
           kind + R"(">
<office:body><office:)" +
           kind + ">" + body + "</office:" + kind + "></office:body></office:document>";
}

ChildProcess openOffice(CapturingDesktop& desktop, const std::string& part, const std::string& file,
                        const std::string& document) {
    const std::string profile = freshFolder(desktop, "office");
    std::filesystem::create_directories(profile + "/user");
    std::ofstream(profile + "/user/registrymodifications.xcu") << R"(<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry">
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="ShowTipOfTheDay" oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="FirstRun" oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Setup/Product"><prop oor:name="ooSetupLastVersion" oor:op="fuse"><value>99.9</value></prop></item>
</oor:items>)";
    const std::string path = desktop.session().homeDirectory() + "/" + file;
    std::ofstream(path, std::ios::binary) << document;
    return openTitled(desktop,
                      {"libreoffice", part, "--norestore", "--nologo", "--nofirststartwizard",
                       "-env:UserInstallation=file://" + profile, path},
                      file);
}

RunningProgram openWriter(CapturingDesktop& desktop) {
    return {openOffice(desktop, "--writer", "sample.fodt", officeDocument("text", paragraphsOf("text:p"))),
            {editorField(desktop, "LibreOffice Writer")}};
}

/// A cell of several lines that is being edited.
RunningProgram openCalc(CapturingDesktop& desktop) {
    const std::string table =
        R"(<table:table table:name="one"><table:table-row><table:table-cell office:value-type="string">)" +
        paragraphsOf("text:p") + "</table:table-cell></table:table-row></table:table>";
    Field field = editorField(desktop, "LibreOffice Calc, cell");
    field.select = [&desktop](std::size_t sample) {
        // Keys that follow at once do not reach the cell.
        desktop.input().tapKey(KEY_ESC);
        letPass(300ms);
        desktop.input().tapKey(KEY_F2);
        letPass(300ms);
        selectLinesOfSample(desktop.input(), sample);
    };
    RunningProgram program{openOffice(desktop, "--calc", "sample.fods", officeDocument("spreadsheet", table)),
                           {field}};
    // Keys that come while it loads keep it from getting done.
    letPass(5s);
    return program;
}

/// An account that reaches nobody; without one there is no composer.
std::string mailPreferences() {
    constexpr std::pair<const char*, const char*> kPreferences[] = {
        {"mail.accountmanager.accounts", "'account1,account2'"},
        {"mail.accountmanager.defaultaccount", "'account2'"},
        {"mail.accountmanager.localfoldersserver", "'server1'"},
        {"mail.account.account1.server", "'server1'"},
        {"mail.account.account2.identities", "'id1'"},
        {"mail.account.account2.server", "'server2'"},
        {"mail.identity.id1.useremail", "'user@example.org'"},
        {"mail.identity.id1.smtpServer", "'smtp1'"},
        {"mail.identity.id1.valid", "true"},
        {"mail.server.server1.type", "'none'"},
        {"mail.server.server1.hostname", "'Local Folders'"},
        {"mail.server.server1.userName", "'nobody'"},
        {"mail.server.server1.directory-rel", "'[ProfD]Mail/Local Folders'"},
        {"mail.server.server2.type", "'pop3'"},
        {"mail.server.server2.hostname", "'127.0.0.1'"},
        {"mail.server.server2.userName", "'user'"},
        {"mail.server.server2.directory-rel", "'[ProfD]Mail/user'"},
        {"mail.server.server2.check_new_mail", "false"},
        {"mail.server.server2.login_at_startup", "false"},
        {"mail.smtpservers", "'smtp1'"},
        {"mail.smtp.defaultserver", "'smtp1'"},
        {"mail.smtpserver.smtp1.hostname", "'127.0.0.1'"},
        {"mail.provider.suppress_dialog_on_startup", "true"},
        {"mail.rights.version", "1"},
        {"mail.shell.checkDefaultClient", "false"},
        {"mail.spotlight.firstRunDone", "true"},
        {"mailnews.start_page.enabled", "false"},
        {"datareporting.policy.dataSubmissionEnabled", "false"},
        {"app.update.enabled", "false"},
        {"toolkit.startup.max_resumed_crashes", "-1"}};
    std::string text;
    for (const auto& [name, value] : kPreferences)
        text += std::string("user_pref('") + name + "', " + value + ");\n";
    return text;
}

RunningProgram openMail(CapturingDesktop& desktop) {
    const std::string profile = freshFolder(desktop, "mail");
    std::ofstream(profile + "/user.js") << mailPreferences();
    const std::string body = profile + "/body.html";
    std::ofstream(body, std::ios::binary) << paragraphsOf("p");
    return {openTitled(desktop,
                       {"thunderbird", "--no-remote", "--profile", profile, "-compose",
                        "to='user@example.org',subject='sample',format=html,message=" + body},
                       "Write: sample"),
            {editorField(desktop, "Thunderbird, composer")}};
}

} // namespace

std::vector<ProgramKind> officePrograms() {
    return {{.name = "LibreOffice Writer", .executable = "lowriter", .open = openWriter},
            {.name = "LibreOffice Calc", .executable = "localc", .open = openCalc},
            {.name = "Thunderbird", .executable = "thunderbird", .open = openMail}};
}

} // namespace quillmoth::test
