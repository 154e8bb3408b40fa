#pragma once

#include "Foundation/FatalError.h"
#include "Foundation/Log.h"
#include "Platform/Fake/FakePlatform.h"
#include "Quillmoth/Assistant/DataModel.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace quillmoth {

/// What a fatal fault becomes in a test.
struct FatalFault : std::runtime_error {
    using std::runtime_error::runtime_error;
};

inline PromptData preset(std::string name, std::string prompt, std::optional<std::string> type = std::nullopt,
                         std::optional<std::string> systemPrompt = std::nullopt) {
    PromptData data;
    data.emoji = "🦉";
    data.name = std::move(name);
    data.prompt = std::move(prompt);
    data.promptType = std::move(type);
    data.systemPrompt = std::move(systemPrompt);
    return data;
}

/// One event of a stream that carries a piece of the answer.
inline std::string piece(const std::string& content) {
    return R"(data: {"choices":[{"delta":{"content":")" + content + "\"},\"index\":0}]}\n\n";
}

/// "role: content" of each message.
inline std::vector<std::string> texts(const std::vector<ChatMessage>& messages) {
    std::vector<std::string> result;
    for (const ChatMessage& message : messages)
        result.push_back(message.role + ": " + message.content);
    return result;
}

using Texts = std::vector<std::string>;

/// A model on the fake platform, with presets of the test's own.
class AssistantFixture : public testing::Test {
protected:
    AssistantFixture()
        : fatal_([](const std::string& text) { throw FatalFault(text); }),
          log_([this](std::string line) { lines.push_back(std::move(line)); }) {
        platform.workspace.frontmost = 42;
        makeModel({preset("Summary", "Sum up: {selected text}"),
                   preset("Fix", "Fix [it]: {selected text}", "context", "You are an editor"),
                   preset("Mail", "Write a mail", "nonContext"),
                   preset("Call", "A call to [whom] for [what]!", "nonContext", "You sell"),
                   preset("Other", "Never listed", "other")});
    }

    void makeModel(const std::vector<PromptData>& prompts) {
        platform.documents.put(PromptModel::kFilename, *writeJSON(prompts));
        model = DataModel::create(platform.platform());
        model->_FloatingViewPanel = std::make_shared<FloatingViewPanel>(platform.panelWindows);
        model->refreshList();
    }

    platform::FakeDataTask& stream() { return platform.urlSessions.lastSession().lastTask(); }

    platform::FakeDataTask& summary() { return platform.urlSessions.shared().lastTask(); }

    std::size_t streamCount() const { return platform.urlSessions.sessions().size(); }

    /// Lets the service answer the running request.
    void serve(int statusCode, const std::vector<std::string>& pieces = {}) {
        stream().deliverStatus(statusCode);
        for (const std::string& text : pieces)
            stream().deliverData(piece(text));
        stream().complete();
        platform.runUntilIdle();
    }

    void failToConnect(const std::string& words) {
        stream().complete(platform::URLError{platform::URLError::Code::cannotConnectToHost, words});
        platform.runUntilIdle();
    }

    /// Types `command` and lets it be answered.
    void converse(const std::string& command, const std::vector<std::string>& pieces) {
        model->_selectedIndex = DataModel::kTypedCommand;
        model->_command = command;
        model->runPrompt();
        serve(200, pieces);
    }

    /// The names of the fields that `action` assigns, in order.
    template<class Action>
    Texts assignments(Action&& action) {
        Texts names;
        const Subscription subscription =
            model->objectWillChange([&](std::string_view name) { names.emplace_back(name); });
        std::forward<Action>(action)();
        return names;
    }

    platform::FakePlatform platform;
    std::vector<std::string> lines;
    ScopedFatalErrorHandler fatal_;
    ScopedLogCapture log_;
    std::shared_ptr<DataModel> model;
};

} // namespace quillmoth
