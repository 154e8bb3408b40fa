#pragma once

#include "Platform/Linux/Wayland/WaylandConnection.h"
#include "Platform/Linux/Wayland/WaylandContent.h"

struct zwlr_data_control_device_v1;
struct zwlr_data_control_manager_v1;
struct zwlr_data_control_offer_v1;
struct zwlr_data_control_source_v1;

namespace quillmoth::platform {

/// The clipboard and the PRIMARY selection, by the protocol for programs that have no window with the
/// keyboard. It names no owners. The thread of its connection.
class WaylandSelection {
public:
    using Clock = WaylandConnection::Clock;

    /// Before the connection's thread starts. Null where the compositor does not offer it. `connection`
    /// outlives the object, and is stopped before its end.
    [[nodiscard]] static std::unique_ptr<WaylandSelection> create(WaylandConnection& connection);

    ~WaylandSelection();
    WaylandSelection(const WaylandSelection&) = delete;
    WaylandSelection& operator=(const WaylandSelection&) = delete;

    /// What another program has put on the clipboard, in all of its forms; handles other events meanwhile.
    [[nodiscard]] WaylandContent content(Clock::time_point deadline);
    /// Its text alone; none where that is none, or was not to be had.
    [[nodiscard]] std::optional<std::string> text(bool isPrimary, Clock::time_point deadline);

    /// Offers it to all programs; an empty one or null leaves the clipboard empty.
    void own(WaylandContentRef content);

    /// Null where the clipboard is another program's.
    [[nodiscard]] const WaylandContentRef& owned() const { return owned_; }

    /// Called when another program has put something on the clipboard.
    std::function<void()> onReplaced = [] {};
    /// Called when PRIMARY has changed.
    std::function<void()> onPrimaryChanged = [] {};
    /// Called when somebody has fetched what is offered here.
    std::function<void()> onFetched = [] {};

private:
    struct Offer {
        zwlr_data_control_offer_v1* proxy = nullptr;
        std::vector<std::string> types;
    };

    WaylandSelection(WaylandConnection& connection, zwlr_data_control_manager_v1* manager);
    void addOffer(zwlr_data_control_offer_v1* offer);
    [[nodiscard]] Offer takeOffer(zwlr_data_control_offer_v1* proxy);
    void changed(zwlr_data_control_offer_v1* offer, bool isPrimary);
    void send(const std::string& type, FileDescriptor file);
    void dropSource();
    [[nodiscard]] std::vector<std::optional<std::string>>
    fetch(const Offer& offer, const std::vector<std::string>& types, Clock::time_point deadline);

    WaylandConnection& connection_;
    zwlr_data_control_manager_v1* manager_;
    zwlr_data_control_device_v1* device_;
    zwlr_data_control_source_v1* source_ = nullptr;
    WaylandContentRef owned_;
    std::vector<Offer> newOffers_;
    Offer clipboard_;
    Offer primary_;
};

} // namespace quillmoth::platform
