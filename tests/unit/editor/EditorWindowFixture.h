#pragma once

#include "Quillmoth/Shell/Controls/ColorScheme.h"
#include "Quillmoth/Shell/Editor/PresetListView.h"
#include "Quillmoth/Shell/Editor/PromptEditorWindow.h"
#include "tests/unit/editor/EditorFixture.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

#include <memory>
#include <stdexcept>

namespace quillmoth {

/// The window of the prompt editor, over a model of the test's own.
class EditorWindowFixture : public EditorFixture {
protected:
    /// Opens the window over `names`, with the preset `index` of the Context tab selected.
    void open(const Names& names, Selection index = std::nullopt) {
        makeModel(names);
        openWindow(index);
    }

    /// Opens it over the model as it is.
    void openWindow(Selection index) {
        window_ = std::make_unique<PromptEditorWindow>(model, platform.platform(), scheme_);
        window_->view().contextTab.selection = index;
        window_->refresh();
        window_->present();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    }

    /// The control that is on screen under this accessible name or text.
    template<class Control>
    Control& control(const QString& name) {
        for (auto* child : window_->findChildren<QWidget*>()) {
            auto* found = dynamic_cast<Control*>(child);
            if (found != nullptr && found->isVisible() && nameOf(*found) == name)
                return *found;
        }
        throw std::runtime_error("There is no control " + name.toStdString());
    }

    template<class Control>
    static QString nameOf(const Control& control) {
        if constexpr (std::is_same_v<Control, QAbstractButton>)
            return control.text().isEmpty() ? control.accessibleName() : control.text();
        else
            return control.accessibleName();
    }

    PresetListView& list() { return control<PresetListView>("Presets"); }

    /// The middle of a row of the list; `part` 0 is its upper edge, 1 its lower one.
    QPoint inRow(int row, double part = 0.5) {
        const QRect place = list().visualRect(list().model()->index(row, 0));
        return {place.center().x(), place.top() + static_cast<int>(part * place.height())};
    }

    void click(const QString& button) { control<QAbstractButton>(button).click(); }

    void type(QWidget& field, const QString& text) {
        field.setFocus();
        QTest::keyClicks(&field, text);
    }

    ColorScheme scheme_{false};
    std::unique_ptr<PromptEditorWindow> window_;
};

} // namespace quillmoth
