#include "Options.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>

namespace quillmoth::markdownview {

namespace {

double numberOf(const QCommandLineParser& parser, const QString& name, double least, double most) {
    bool isNumber = false;
    const double value = parser.value(name).toDouble(&isNumber);
    if (!isNumber || value < least || value > most) {
        std::fprintf(stderr, "markdownview: --%s takes a number from %g to %g\n", qPrintable(name), least,
                     most);
        std::exit(EXIT_FAILURE); // NOLINT(concurrency-mt-unsafe): no other thread runs yet
    }
    return value;
}

} // namespace

Options readOptions(const QCoreApplication& application) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows a Markdown file as Quillmoth renders answers."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("FILE"),
                                 QStringLiteral("Markdown file, \"-\" for standard input"));
    parser.addOptions({
        {QStringLiteral("width"), QStringLiteral("Width of the document."), QStringLiteral("N"),
         QStringLiteral("592")},
        {QStringLiteral("size"), QStringLiteral("Font size."), QStringLiteral("N"), QStringLiteral("16")},
        {QStringLiteral("scale"), QStringLiteral("Device pixels to a pixel, in pictures."),
         QStringLiteral("N"), QStringLiteral("1")},
        {QStringLiteral("dark"), QStringLiteral("Colours of the panel (default).")},
        {QStringLiteral("light"), QStringLiteral("Colours on a light ground.")},
        {QStringLiteral("font"), QStringLiteral("Font family of texts."), QStringLiteral("FAMILY")},
        {QStringLiteral("code-font"), QStringLiteral("Font family of code."), QStringLiteral("FAMILY")},
        {QStringLiteral("png"), QStringLiteral("Write a picture of the document and end."),
         QStringLiteral("OUT")},
        {QStringLiteral("gallery"),
         QStringLiteral("Write pictures of the document in all colours, sizes, widths and scales, and end."),
         QStringLiteral("FOLDER")},
        {QStringLiteral("dump"), QStringLiteral("Print the display list and end.")},
    });
    parser.process(application);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(EXIT_FAILURE);
    Options options;
    options.file = parser.positionalArguments().constFirst();
    options.pictureFile = parser.value(QStringLiteral("png"));
    options.galleryFolder = parser.value(QStringLiteral("gallery"));
    options.textFamily = parser.value(QStringLiteral("font"));
    options.codeFamily = parser.value(QStringLiteral("code-font"));
    options.width = numberOf(parser, QStringLiteral("width"), 80, 10000);
    options.fontSize = numberOf(parser, QStringLiteral("size"), 4, 200);
    options.scale = numberOf(parser, QStringLiteral("scale"), 0.5, 8);
    options.isDark = !parser.isSet(QStringLiteral("light"));
    options.dumps = parser.isSet(QStringLiteral("dump"));
    return options;
}

} // namespace quillmoth::markdownview
