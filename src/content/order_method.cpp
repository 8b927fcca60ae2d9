#include "content/order_method.h"

#include <iterator>
#include <string_view>

#include "core/child_tool.h"
#include "core/object_factory.h"
#include "core/singleton_tool.h"
#include "platform/com/failure.h"
#include "platform/com/messages.h"

namespace qvr {
namespace {

// The kinds a target may be, by element name in the order of QVROrderTargetType.
constexpr const char* targetNames[] = {"Phone", "Email", "Fax", "URL"};
constexpr TypeSet targetTypes = typeSet({qvrPhone, qvrEmail, qvrFax, qvrURL});

} // namespace

HRESULT CQVRCatalogOrderTarget::get_target(Ref<IQVRCatalogObject>* target) {
    return guarded([&] {
        if (!target) return E_POINTER;
        *target = nullptr;
        if (!initialized()) return notInitialized();
        Ref<IXMLDOMNode> child;
        HRESULT hr = element()->get_firstChild(&child);
        if (FAILED(hr) || !child) return FAILED(hr) ? hr : S_FALSE;
        return createObjectOf(child, catalogRef(), self(), target);
    });
}

HRESULT CQVRCatalogOrderTarget::putref_target(IQVRCatalogObject* target) {
    return guarded([&] {
        if (!target) return E_POINTER;
        if (!initialized()) return notInitialized();
        QVRObjectType type;
        HRESULT hr = target->get_objectType(&type);
        if (FAILED(hr)) return hr;
        if (!qvr::contains(targetTypes, type)) return report(msgBadOrderTarget);
        Ref<IXMLDOMNode> present;
        if (FAILED(hr = element()->get_firstChild(&present))) return hr;
        Ref<IQVRCatalogObject> placed;
        if (!present) {
            // No key and no selection: the one child simply goes in.
            hr = ChildTool(element()).insertChildObject(catalogRef(), self(), target, Variant(),
                                                        &placed, "NA", "NA");
        } else {
            // Whatever kind stands there gives way, so a Phone can replace an Email.
            String name;
            if (FAILED(hr = present->get_nodeName(&name))) return hr;
            hr = SingletonTool(element()).replaceSingleton(catalogRef(), self(), name, target,
                                                           &placed);
        }
        if (hr == S_OK) fireChanged();
        return hr;
    });
}

HRESULT CQVRCatalogOrderTarget::get_targetType(std::int32_t* type) {
    return guarded([&] {
        if (!type) return E_POINTER;
        *type = qvrTargetUnknown;
        if (!initialized()) return notInitialized();
        Ref<IXMLDOMNode> child;
        HRESULT hr = element()->get_firstChild(&child);
        if (FAILED(hr)) return hr;
        if (!child) {
            *type = qvrTargetNone;
            return S_OK;
        }
        String name;
        if (FAILED(hr = child->get_nodeName(&name))) return hr;
        for (std::size_t kind = 0; kind < std::size(targetNames); ++kind) {
            if (name.view() == targetNames[kind]) {
                *type = static_cast<std::int32_t>(kind);
                return S_OK;
            }
        }
        return report(msgUnknownOrderTargetName);
    });
}

} // namespace qvr
