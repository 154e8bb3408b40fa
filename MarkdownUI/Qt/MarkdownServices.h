#pragma once

#include "MarkdownUI/Qt/DefaultImageLoader.h"
#include "MarkdownUI/Qt/DisplayListPainter.h"
#include "MarkdownUI/Qt/MarkdownPalette.h"
#include "MarkdownUI/Qt/QtTextEngine.h"
#include "MarkdownUI/Style/CodeSyntaxHighlighter.h"

#include <functional>
#include <utility>

namespace quillmoth::markdown {

/// Runs `work` off the main thread, one after the other, and then `finished` on the main thread.
using BackgroundWork = std::function<void(std::function<void()> work, std::function<void()> finished)>;

/// What the documents of one window share. Outlives them. Main thread.
struct MarkdownServices {
    /// `codeHighlighter` may be null, for code without colours; it outlives the services.
    explicit MarkdownServices(const MarkdownPalette& colors,
                              const CodeSyntaxHighlighter* codeHighlighter = nullptr,
                              ImageServices imageServices = {}, FontCache fonts = FontCache())
        : palette(colors), engine(palette, std::move(fonts)), images(std::move(imageServices)),
          highlighter(codeHighlighter), painter(palette, engine.fonts(), images) {}

    MarkdownServices(const MarkdownServices&) = delete;
    MarkdownServices& operator=(const MarkdownServices&) = delete;

    const MarkdownPalette palette;
    QtTextEngine engine;
    DefaultImageLoader images;
    const CodeSyntaxHighlighter* highlighter;
    DisplayListPainter painter;
    /// Where long texts are parsed; without it, all are parsed at once.
    BackgroundWork background;
};

} // namespace quillmoth::markdown
