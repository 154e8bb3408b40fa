#pragma once

#include <QString>
#include <QVariantList>
#include <optional>

/// Questions to services on the session bus. Main thread.
namespace quillmoth::platform {

struct BusObject {
    QString service;
    QString path;
    QString interface;
};

/// Waits for the answer, for a quarter of a second at most. None where nobody answers, or the answer is an
/// error; starts no service.
[[nodiscard]] std::optional<QVariantList> askOnBus(const BusObject& object, const QString& method,
                                                   const QVariantList& arguments = {});

/// The unique name of who has the name `service` now; empty for nobody.
[[nodiscard]] QString ownerOnBus(const QString& service);

} // namespace quillmoth::platform
