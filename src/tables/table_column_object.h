// The columns proper (plain, reference, const, calculated and unique columns): a name for the
// formulas, a data type, a unit and a free text, and the way a new one is described.
#pragma once

#include <cstdint>

#include "tables/table_child.h"

namespace qvr {

// The names of QVRColumnDataType in `dataType`, by number.
inline constexpr const char* dataTypeNames[] = {"string", "int", "float"};

template <class Interface, QVRObjectType Type>
class TableColumnObject : public TableChildObject<Interface, Type> {
public:
    // --- IQVRTableColumnObject -----------------------------------------------------------------
    HRESULT get_attrib(String* attrib) override {
        return accessors::getAttribute(*this, "attrib", attrib);
    }
    HRESULT put_attrib(const String& attrib) override {
        return accessors::putAttribute(*this, "attrib", attrib);
    }
    // A name that is none of the three reads as "string".
    HRESULT get_dataType(QVRColumnDataType* dataType) override {
        return accessors::getNumberedAttribute(*this, "dataType", dataTypeNames, qvrDataTypeString,
                                               dataType);
    }
    // The cells keep their texts, whatever the new type.
    HRESULT put_dataType(QVRColumnDataType dataType) override {
        return accessors::putNumberedAttribute(*this, "dataType", dataTypeNames, dataType);
    }
    HRESULT get_name(String* name) override { return accessors::getAttribute(*this, "name", name); }
    HRESULT put_name(const String& name) override {
        return accessors::putAttribute(*this, "name", name);
    }
    HRESULT get_unit(String* unit) override { return accessors::getAttribute(*this, "unit", unit); }
    HRESULT put_unit(const String& unit) override {
        return accessors::putAttribute(*this, "unit", unit);
    }

    // The description of a new column, written in this order: a new `id`, `dataType`, `name`,
    // `attrib`, then `desc` and `unit` when not empty, and `visible` "0" for a hidden column.
    // Fires nothing. The first failing step ends it.
    HRESULT describeNew(QVRColumnDataType dataType, const String& name, const String& attrib,
                        const String& desc, const String& unit, VARIANT_BOOL visible) {
        if (!accessors::namesNumber(dataTypeNames, dataType)) return E_INVALIDARG;
        IXMLDOMElement* element = this->element();
        HRESULT hr = element->setAttribute("id", newColumnId());
        if (hr == S_OK) hr = element->setAttribute("dataType", dataTypeNames[dataType]);
        if (hr == S_OK) hr = element->setAttribute("name", name.isNull() ? String("") : name);
        if (hr == S_OK) hr = element->setAttribute("attrib", attrib.isNull() ? String("") : attrib);
        if (hr == S_OK && !desc.isEmpty()) hr = element->setAttribute("desc", desc);
        if (hr == S_OK && !unit.isEmpty()) hr = element->setAttribute("unit", unit);
        if (hr == S_OK && visible == VARIANT_FALSE) hr = element->setAttribute("visible", "0");
        return hr;
    }
};

} // namespace qvr
