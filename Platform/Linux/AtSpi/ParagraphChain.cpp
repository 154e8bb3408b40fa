#include "Platform/Linux/AtSpi/ParagraphChain.h"

#include "Foundation/Limits.h"

#include <algorithm>

namespace quillmoth::platform {

namespace {

struct Neighbours {
    ObjectReference before;
    ObjectReference behind;
};

Neighbours neighboursOf(Operation& operation, const ObjectReference& object) {
    Neighbours neighbours;
    const Variant reply =
        operation.call(object, ATSPI_DBUS_INTERFACE_ACCESSIBLE, "GetRelationSet", nullptr, "(a(ua(so)))");
    if (!reply)
        return neighbours;
    const Variant relations(g_variant_get_child_value(reply.get(), 0));
    for (gsize index = 0; index < g_variant_n_children(relations.get()); ++index) {
        const Variant relation(g_variant_get_child_value(relations.get(), index));
        const Variant kind(g_variant_get_child_value(relation.get(), 0));
        const Variant targets(g_variant_get_child_value(relation.get(), 1));
        if (g_variant_n_children(targets.get()) == 0)
            continue;
        const Variant target(g_variant_get_child_value(targets.get(), 0));
        const gchar* name = nullptr;
        const gchar* path = nullptr;
        g_variant_get(target.get(), "(&s&o)", &name, &path);
        const guint32 type = g_variant_get_uint32(kind.get());
        if (type == ATSPI_RELATION_FLOWS_FROM)
            neighbours.before = {.name = name, .path = path};
        else if (type == ATSPI_RELATION_FLOWS_TO)
            neighbours.behind = {.name = name, .path = path};
    }
    return neighbours;
}

bool isSelected(const TextElement& element, const ObjectReference& paragraph) {
    return !paragraph.isNull() &&
           TextElement(element.operation(), paragraph, element.toolkit()).selectionCount().value_or(0) > 0;
}

/// Those next to each other in one direction, the nearest first.
std::vector<ObjectReference> selectedFrom(const TextElement& element,
                                          ObjectReference Neighbours::*direction) {
    std::vector<ObjectReference> found;
    ObjectReference next = neighboursOf(element.operation(), element.object()).*direction;
    while (found.size() < limits::kSelectedParagraphs && isSelected(element, next)) {
        found.push_back(next);
        next = neighboursOf(element.operation(), found.back()).*direction;
    }
    return found;
}

} // namespace

std::vector<ObjectReference> selectedParagraphs(const TextElement& element) {
    if (roleOf(element.operation(), element.object()) != ATSPI_ROLE_PARAGRAPH)
        return {};
    const auto before = selectedFrom(element, &Neighbours::before);
    const auto behind = selectedFrom(element, &Neighbours::behind);
    std::vector<ObjectReference> all(before.rbegin(), before.rend());
    // With nothing selected itself it is where a selection of others ends.
    if (!before.empty() || !behind.empty())
        all.push_back(element.object());
    all.insert(all.end(), behind.begin(), behind.end());
    return all;
}

} // namespace quillmoth::platform
