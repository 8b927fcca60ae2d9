// Moving columns or rows by their one-based places: one place, or an array of places that keep
// their relative order whether they come from before or behind the target. The table's
// moveColumns and the unique column's moveRows take their arguments alike and walk alike; they
// differ in what one move is and in how they answer when they have no element.
#pragma once

#include <climits>
#include <cstdint>
#include <functional>

#include <qvr/variant.h>

#include "core/child_tool.h"
#include "core/object_core.h"
#include "core/object_factory.h"
#include "platform/com/failure.h"

namespace qvr::index_moves {

// The checks of the arguments: `from` a variant array, a text, an object or an integer, else
// E_INVALIDARG; `to` a text, an object or an integer, else E_INVALIDARG; an integer `to` below 1
// reports "Index must not be 0 (one - based index)." through `reporter`; a `to` that is no
// integer E_NOTIMPL. On S_OK `target` holds `to`.
HRESULT checkArguments(const ObjectCore& reporter, const Variant& from, const Variant& to,
                       std::int32_t* target);

// One move: the item at the one-based place `from` goes before the item at `to`.
using MoveOne = std::function<HRESULT(std::int32_t from, std::int32_t to)>;

// Moves the place or places of `from` (E_NOTIMPL when it is neither an integer nor an array) to
// `to`. An array walks every element and answers the status of the last one; an element that is
// no integer answers E_NOTIMPL and moves nothing.
HRESULT moveAll(const Variant& from, std::int32_t to, const MoveOne& move);

// Where an item taken from `from` is inserted to stand before the item that stood at `to`: the
// removal has shifted what stood behind it.
constexpr std::int32_t insertionPlace(std::int32_t from, std::int32_t to) {
    return from > to || to == INT32_MIN ? to : to - 1;
}

// Takes the element `node` of `object` out of its parent, the element of `parentTool`, and
// places it again by `insert`. When that fails the element goes back before its old next
// sibling, so that a failed move loses nothing; `tell(event, place)` tells of each step.
template <class Insert, class Tell>
HRESULT moveElement(ChildTool& parentTool, IQVRCatalogObject* table, IQVRCatalogObject* parent,
                    IXMLDOMNode* node, IQVRCatalogObject* object, const Variant& place,
                    Insert insert, Tell tell) {
    // Nothing thrown between the removal and the insertion may leave the element out.
    const auto told = [&](std::int32_t event, const Variant& where) {
        guarded([&] {
            tell(event, where);
            return S_OK;
        });
    };
    Ref<IXMLDOMNode> next;
    HRESULT hr = node->get_nextSibling(&next);
    if (FAILED(hr)) return hr;
    if ((hr = parentTool.removeChildObject(table, object, nullptr)) != S_OK) return hr;
    told(qvrEventObjectRemoved, Variant());
    if ((hr = guarded(insert)) == S_OK) {
        told(qvrEventObjectInserted, place);
        return S_OK;
    }
    if (SUCCEEDED(parentTool.insertNode(node, next))) {
        Ref<IQVRCatalogObject> following;
        if (next) guarded([&] { return createObjectOf(next, table, parent, &following); });
        told(qvrEventObjectInserted, following ? Variant(following) : Variant());
    }
    return hr;
}

} // namespace qvr::index_moves
