// What every tool reads of an object to name it: its name, its key and its kind.
#pragma once

#include <string>

#include <qvr/object.h>

namespace qvr::tools {

inline std::string nameOf(IQVRCatalogObject* object) {
    Variant name;
    return object && object->getValue("@name", &name) == S_OK ? name.str().str() : "";
}

inline std::string keyOf(IQVRCatalogObject* object) {
    String key;
    if (object) object->get_key(&key);
    return key.str();
}

inline QVRObjectType typeOf(IQVRCatalogObject* object) {
    QVRObjectType type = qvrCatalog;
    if (object) object->get_objectType(&type);
    return type;
}

} // namespace qvr::tools
