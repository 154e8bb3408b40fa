#pragma once

#include "Quillmoth/Assistant/FloatingViewController.h"
#include "tests/unit/assistant/AssistantFixture.h"

namespace quillmoth {

using Key = FloatingViewController::Key;
using Content = FloatingViewController::Content;
using BarItem = FloatingViewController::BarItem;
using FieldCommand = FloatingViewController::FieldCommand;
using FieldAnswer = FloatingViewController::FieldAnswer;

/// The panel's controller on that model, its first list made.
class FloatingViewFixture : public AssistantFixture {
protected:
    FloatingViewFixture() : view(FloatingViewController::create(model, platform.platform())) {
        view->viewAppeared();
        settle();
    }

    /// Runs what is due, the short delays of the focus included.
    void settle() {
        platform.runUntilIdle();
        platform.mainQueue.advance(0.2);
    }

    std::shared_ptr<FloatingViewController> view;
};

} // namespace quillmoth
