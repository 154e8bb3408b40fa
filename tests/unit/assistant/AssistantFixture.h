#pragma once

#include "Quillmoth/Assistant/DataModel.h"
#include "tests/unit/PlatformFixture.h"

#include <memory>
#include <utility>

namespace quillmoth {

using Rows = std::vector<std::int64_t>;

inline PromptData preset(std::string name, std::string prompt, std::optional<std::string> type = std::nullopt,
                         std::optional<std::string> systemPrompt = std::nullopt) {
    return {{}, "🦉", std::move(name), std::move(prompt), std::move(systemPrompt), std::move(type), {}};
}

/// One event of a stream that carries a piece of the answer.
inline std::string piece(const std::string& content) {
    return R"(data: {"choices":[{"delta":{"content":")" + content + "\"},\"index\":0}]}\n\n";
}

/// "role: content" of each message.
inline Texts texts(const std::vector<ChatMessage>& messages) {
    Texts result;
    for (const ChatMessage& message : messages)
        result.push_back(message.role + ": " + message.content);
    return result;
}

inline Texts operator+(Texts left, const Texts& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

/// The assignments of a clamped selection, and those of a list refresh.
inline const Texts kClamp{"_selectedIndex", "_selectedIndex", "_hoverIndex"};
inline const Texts kRefresh = Texts{"_filteredData", "_filteredData"} + kClamp;

/// What leaving a panel does to it.
inline const Texts kResign{"saveFrameUsingName savedFrame", "close", "close"};

/// A model on the fake platform, with presets of the test's own.
class AssistantFixture : public PlatformFixture {
protected:
    AssistantFixture() {
        platform.workspace.frontmost = 42;
        platform.userDefaults.set("gatewayBaseURL", std::string("https://gateway.example"));
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

    std::size_t summaryCount() const { return platform.urlSessions.shared().tasks().size(); }

    std::size_t streamCount() const { return platform.urlSessions.sessions().size(); }

    Texts& panelCalls() { return platform.panelWindows.lastPanel().calls; }

    /// Runs what `index` and `command` ask for.
    void ask(const std::string& command, std::int64_t index = DataModel::kTypedCommand) {
        model->_selectedIndex = index;
        model->_command = command;
        model->runPrompt();
    }

    /// Lets the service answer the running request, and end with or without an error.
    void serveData(int statusCode, const std::string& data,
                   const std::optional<platform::URLError>& error = std::nullopt) {
        stream().deliverStatus(statusCode);
        if (!data.empty())
            stream().deliverData(data);
        stream().complete(error);
        platform.runUntilIdle();
    }

    void failToConnect(const std::string& words) {
        stream().complete(platform::URLError{platform::URLError::Code::cannotConnectToHost, words});
        platform.runUntilIdle();
    }

    /// Types `command` and lets it be answered.
    void converse(const std::string& command, const std::string& answer) {
        ask(command);
        serveData(200, piece(answer));
    }

    void startAnew() { model->_messages = std::vector<ChatMessage>(); }

    /// Stores a conversation of one message for each topic, the last one first.
    void store(const Texts& topics) {
        for (const std::string& topic : topics)
            model->storeConversation(topic, {{.id = "1", .role = "user", .content = topic}}, -1);
    }

    void openStored(std::int64_t row) {
        model->_openHistory = true;
        model->_keyHistorySelected = row;
        model->runPrompt();
    }

    void hold(const std::string& context) {
        model->_selectedValue = context;
        model->_isContext = true;
    }

    /// "response|command|error", and whether a request runs.
    std::string shown() const {
        return *model->_responseValue + "|" + *model->_command + "|" + *model->_error +
               (model->_isLoading ? " ..." : "");
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

    std::shared_ptr<DataModel> model;
};

} // namespace quillmoth
