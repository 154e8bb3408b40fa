#include "Platform/Linux/Wayland/WaylandSelection.h"

#include "Foundation/Limits.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <iterator>
#include <poll.h>
#include <string_view>
#include <unistd.h>
#include <utility>
#include <wlr-data-control-unstable-v1.h>

namespace quillmoth::platform {

namespace {

/// With PRIMARY.
constexpr std::uint32_t kDataControlVersion = 2;

/// The best first. Programs on X11 give the others.
constexpr std::string_view kTextTypes[] = {"text/plain;charset=utf-8", "UTF8_STRING", "text/plain", "STRING",
                                           "TEXT"};

/// By which our own offers are known when they come back. Nothing is in it.
constexpr const char* kOwnType = "application/x-quillmoth-own";

bool isTextType(const std::string& type) {
    return type.starts_with("text/plain") ||
           std::find(std::begin(kTextTypes), std::end(kTextTypes), type) != std::end(kTextTypes);
}

/// No forms of the content, but questions about it.
bool isMeta(const std::string& type) {
    constexpr std::string_view kMeta[] = {"TARGETS",      "MULTIPLE",      "TIMESTAMP",
                                          "SAVE_TARGETS", "COMPOUND_TEXT", "DELETE"};
    return std::find(std::begin(kMeta), std::end(kMeta), type) != std::end(kMeta);
}

std::optional<std::string> bestTextType(const std::vector<std::string>& types) {
    for (const std::string_view type : kTextTypes) {
        if (std::find(types.begin(), types.end(), type) != types.end())
            return std::string(type);
    }
    return std::nullopt;
}

/// What is being read from one pipe.
struct Intake {
    FileDescriptor file;
    std::string bytes;
    bool isDone = false;
    bool isWhole = false;

    /// False at the end.
    bool readSome() {
        char buffer[65536];
        const auto count = read(file.get(), buffer, sizeof buffer);
        if (count < 0 && (errno == EAGAIN || errno == EINTR))
            return true;
        if (count > 0) {
            bytes.append(buffer, static_cast<std::size_t>(count));
            if (bytes.size() <= limits::kClipboardForm)
                return true;
        }
        isDone = true;
        isWhole = count == 0;
        return false;
    }
};

/// What is being written to one reader. One that has gone ends it.
struct Outlet {
    FileDescriptor file;
    WaylandContentRef content;
    std::string_view rest;

    /// False once nothing is left.
    bool writeSome() {
        while (!rest.empty()) {
            const auto count = write(file.get(), rest.data(), rest.size());
            if (count < 0)
                return errno == EAGAIN || errno == EINTR;
            rest.remove_prefix(static_cast<std::size_t>(count));
        }
        return false;
    }
};

} // namespace

std::unique_ptr<WaylandSelection> WaylandSelection::create(WaylandConnection& connection) {
    auto* manager = connection.bind<zwlr_data_control_manager_v1>(zwlr_data_control_manager_v1_interface,
                                                                  kDataControlVersion);
    if (manager == nullptr || connection.seat() == nullptr)
        return nullptr;
    return std::unique_ptr<WaylandSelection>(new WaylandSelection(connection, manager));
}

WaylandSelection::WaylandSelection(WaylandConnection& connection, zwlr_data_control_manager_v1* manager)
    : connection_(connection), manager_(manager),
      device_(zwlr_data_control_manager_v1_get_data_device(manager, connection.seat())) {
    static constexpr zwlr_data_control_device_v1_listener kListener = {
        .data_offer =
            [](void* data, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1* offer) {
                static_cast<WaylandSelection*>(data)->addOffer(offer);
            },
        .selection =
            [](void* data, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1* offer) {
                static_cast<WaylandSelection*>(data)->changed(offer, false);
            },
        .finished = [](void*, zwlr_data_control_device_v1*) {},
        .primary_selection =
            [](void* data, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1* offer) {
                static_cast<WaylandSelection*>(data)->changed(offer, true);
            },
    };
    zwlr_data_control_device_v1_add_listener(device_, &kListener, this);
}

WaylandSelection::~WaylandSelection() {
    for (const Offer& offer : newOffers_)
        zwlr_data_control_offer_v1_destroy(offer.proxy);
    for (const Offer* offer : {&clipboard_, &primary_}) {
        if (offer->proxy != nullptr)
            zwlr_data_control_offer_v1_destroy(offer->proxy);
    }
    dropSource();
    zwlr_data_control_device_v1_destroy(device_);
    zwlr_data_control_manager_v1_destroy(manager_);
}

void WaylandSelection::addOffer(zwlr_data_control_offer_v1* offer) {
    static constexpr zwlr_data_control_offer_v1_listener kListener = {
        .offer = [](void* data, zwlr_data_control_offer_v1* proxy, const char* type) {
            for (Offer& known : static_cast<WaylandSelection*>(data)->newOffers_) {
                if (known.proxy == proxy && known.types.size() < limits::kClipboardPairs)
                    known.types.emplace_back(type);
            }
        }};
    newOffers_.push_back({.proxy = offer, .types = {}});
    zwlr_data_control_offer_v1_add_listener(offer, &kListener, this);
}

WaylandSelection::Offer WaylandSelection::takeOffer(zwlr_data_control_offer_v1* proxy) {
    const auto found = std::find_if(newOffers_.begin(), newOffers_.end(),
                                    [proxy](const Offer& each) { return each.proxy == proxy; });
    if (proxy == nullptr || found == newOffers_.end())
        return {};
    Offer offer = std::move(*found);
    newOffers_.erase(found);
    return offer;
}

void WaylandSelection::changed(zwlr_data_control_offer_v1* proxy, bool isPrimary) {
    Offer& place = isPrimary ? primary_ : clipboard_;
    if (place.proxy != nullptr)
        zwlr_data_control_offer_v1_destroy(place.proxy);
    place = takeOffer(proxy);
    if (isPrimary)
        return onPrimaryChanged();
    const bool isOwn = std::find(place.types.begin(), place.types.end(), kOwnType) != place.types.end();
    // An empty clipboard may be our own doing, and says nothing new.
    if (!isOwn && place.proxy != nullptr)
        onReplaced();
}

std::vector<std::optional<std::string>> WaylandSelection::fetch(const Offer& offer,
                                                                const std::vector<std::string>& types,
                                                                Clock::time_point deadline) {
    std::vector<std::shared_ptr<Intake>> intakes;
    for (const std::string& type : types) {
        int ends[2] = {-1, -1};
        auto intake = std::make_shared<Intake>();
        intakes.push_back(intake);
        if (pipe2(ends, O_CLOEXEC) != 0)
            continue;
        intake->file = FileDescriptor(ends[0]);
        const FileDescriptor writeEnd(ends[1]);
        fcntl(ends[0], F_SETFL, O_NONBLOCK);
        zwlr_data_control_offer_v1_receive(offer.proxy, type.c_str(), writeEnd.get());
        connection_.watch(ends[0], POLLIN, [intake] { return intake->readSome(); });
    }
    const auto isDone = [&] {
        return std::all_of(intakes.begin(), intakes.end(), [](const auto& each) { return each->isDone; });
    };
    while (!isDone() && Clock::now() < deadline && connection_.step(deadline)) {
    }
    std::vector<std::optional<std::string>> found;
    for (const auto& intake : intakes) {
        if (intake->file)
            connection_.forget(intake->file.get());
        found.push_back(intake->isWhole ? std::optional(std::move(intake->bytes)) : std::nullopt);
    }
    return found;
}

WaylandContent WaylandSelection::content(Clock::time_point deadline) {
    WaylandContent content;
    if (clipboard_.proxy == nullptr)
        return content;
    const auto textType = bestTextType(clipboard_.types);
    std::vector<std::string> types;
    for (const std::string& type : clipboard_.types) {
        if (type == textType || (!isTextType(type) && !isMeta(type)))
            types.push_back(type);
    }
    auto found = fetch(clipboard_, types, deadline);
    for (std::size_t index = 0; index < types.size(); ++index) {
        if (!found[index])
            content.isComplete = false;
        else if (types[index] == textType)
            content.text = std::move(found[index]);
        else
            content.others.emplace_back(types[index], std::move(*found[index]));
    }
    return content;
}

std::optional<std::string> WaylandSelection::text(bool isPrimary, Clock::time_point deadline) {
    const Offer& offer = isPrimary ? primary_ : clipboard_;
    const auto type = bestTextType(offer.types);
    if (offer.proxy == nullptr || !type)
        return std::nullopt;
    auto text = fetch(offer, {*type}, deadline).front();
    // Some programs count the zero that ends a string in C.
    while (text && text->ends_with('\0'))
        text->pop_back();
    return text;
}

void WaylandSelection::own(WaylandContentRef content) {
    static constexpr zwlr_data_control_source_v1_listener kListener = {
        .send =
            [](void* data, zwlr_data_control_source_v1*, const char* type, std::int32_t file) {
                static_cast<WaylandSelection*>(data)->send(type, FileDescriptor(file));
            },
        .cancelled =
            [](void* data, zwlr_data_control_source_v1* source) {
                auto& selection = *static_cast<WaylandSelection*>(data);
                if (selection.source_ == source)
                    selection.dropSource();
            },
    };
    if (!content || content->empty()) {
        zwlr_data_control_device_v1_set_selection(device_, nullptr);
        return dropSource();
    }
    // It goes once the new one stands in its place: in between the clipboard would be empty, which those that
    // keep it for others take for its end.
    auto* const former = source_;
    source_ = zwlr_data_control_manager_v1_create_data_source(manager_);
    zwlr_data_control_source_v1_add_listener(source_, &kListener, this);
    zwlr_data_control_source_v1_offer(source_, kOwnType);
    if (content->text) {
        for (const std::string_view type : kTextTypes)
            zwlr_data_control_source_v1_offer(source_, std::string(type).c_str());
    }
    for (const auto& [type, bytes] : content->others) {
        if (type != kOwnType)
            zwlr_data_control_source_v1_offer(source_, type.c_str());
    }
    owned_ = std::move(content);
    zwlr_data_control_device_v1_set_selection(device_, source_);
    if (former != nullptr)
        zwlr_data_control_source_v1_destroy(former);
}

void WaylandSelection::dropSource() {
    if (source_ != nullptr)
        zwlr_data_control_source_v1_destroy(std::exchange(source_, nullptr));
    owned_.reset();
}

void WaylandSelection::send(const std::string& type, FileDescriptor file) {
    if (!owned_)
        return;
    std::string_view bytes;
    if (isTextType(type) && owned_->text)
        bytes = *owned_->text;
    for (const auto& [name, form] : owned_->others) {
        if (name == type)
            bytes = form;
    }
    if (bytes.empty())
        return;
    fcntl(file.get(), F_SETFL, O_NONBLOCK);
    const int number = file.get();
    // The content lives as long as somebody reads of it.
    auto writing = std::make_shared<Outlet>(Outlet{std::move(file), owned_, bytes});
    connection_.watch(number, POLLOUT, [this, writing, isText = isTextType(type)] {
        const bool goesOn = writing->writeSome();
        if (!goesOn && writing->rest.empty() && isText && writing->content == owned_)
            onFetched();
        return goesOn;
    });
}

} // namespace quillmoth::platform
