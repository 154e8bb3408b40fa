// markdownview: shows a Markdown file as the panel shows an answer, or writes a picture or the display list
// of it.

#include "ImageLoading.h"
#include "MarkdownView.h"
#include "Options.h"
#include "Picture.h"

#include "Quillmoth/Highlighting/SplashCodeSyntaxHighlighter.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QUrl>

#include <cstdio>
#include <cstdlib>
#include <optional>

namespace {

using namespace quillmoth;

constexpr int kWindowHeight = 700;
constexpr double kPadding = 30;

std::optional<std::string> contentsOf(const QString& name) {
    QFile file(name);
    const bool isOpen =
        name == QLatin1String("-") ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    return isOpen ? std::optional(file.readAll().toStdString()) : std::nullopt;
}

QString familyOr(const QString& family, QFontDatabase::SystemFont fallback) {
    return family.isEmpty() ? QFontDatabase::systemFont(fallback).family() : family;
}

int showWindow(markdown::MarkdownServices& services, const std::string& text,
               const markdownview::Options& options) {
    markdown::MarkdownView view(services);
    view.setWindowTitle(QFileInfo(options.file).fileName());
    view.onLinkActivated = [](const QString& url) { QDesktopServices::openUrl(QUrl(url)); };
    view.item().setFontSize(options.fontSize);
    view.setMarkdown(text);
    view.resize(static_cast<int>(options.width + 2 * kPadding), kWindowHeight);
    view.show();
    return QApplication::exec();
}

markdown::FontCache fontsOf(const markdownview::Options& options) {
    return {familyOr(options.textFamily, QFontDatabase::GeneralFont),
            familyOr(options.codeFamily, QFontDatabase::FixedFont)};
}

/// Writes the pictures of a gallery in both palettes.
bool showGallery(const std::string& text, const markdown::CodeSyntaxHighlighter& highlighter,
                 const markdownview::Options& options) {
    if (!QDir().mkpath(options.galleryFolder)) {
        std::fprintf(stderr, "markdownview: cannot make %s\n", qPrintable(options.galleryFolder));
        return false;
    }
    for (const auto& palette : {markdown::MarkdownPalette::panel(), markdown::MarkdownPalette::light()}) {
        markdown::MarkdownServices services(
            palette, &highlighter, markdownview::makeImageLoader(QFileInfo(options.file).absolutePath()),
            fontsOf(options));
        const QStringList names = markdownview::writeGallery(services, text, options.galleryFolder);
        if (names.isEmpty())
            return false;
        std::printf("%s\n", qPrintable(names.join('\n')));
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const markdownview::Options options = markdownview::readOptions(application);
    const auto text = contentsOf(options.file);
    if (!text) {
        std::fprintf(stderr, "markdownview: cannot read %s\n", qPrintable(options.file));
        return EXIT_FAILURE;
    }
    const highlighting::SplashCodeSyntaxHighlighter highlighter(
        highlighting::Theme::midnight(highlighting::Font(16)));
    if (!options.galleryFolder.isEmpty())
        return showGallery(*text, highlighter, options) ? EXIT_SUCCESS : EXIT_FAILURE;
    markdown::MarkdownServices services(
        options.isDark ? markdown::MarkdownPalette::panel() : markdown::MarkdownPalette::light(),
        &highlighter, markdownview::makeImageLoader(QFileInfo(options.file).absolutePath()),
        fontsOf(options));
    if (options.dumps || !options.pictureFile.isEmpty())
        return markdownview::writeDocument(services, *text, options) ? EXIT_SUCCESS : EXIT_FAILURE;
    return showWindow(services, *text, options);
}
