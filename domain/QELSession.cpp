#include "QELSession.h"

#include <cstdint>

#include "QELComponent.h"
#include "QELKeeper.h"
#include "QELModelHeap.h"
#include "QELPropertySet.h"
#include "UTILString.h"

QELSession* QELSession::_instance = nullptr;

namespace {
using SubMap = TYPMapCATUnicodeStringPVoid; // component name -> component
}

QELSession::QELSession() : _registry(nullptr) { set_ClassName("QELSESSION_CLASSNAME"); }

QELSession::~QELSession() { release(); }

QELSession* QELSession::getInstance() {
    if (!_instance) _instance = new QELSession();
    return _instance;
}

void QELSession::setInstance(QELSession* session) { _instance = session; }

void QELSession::removeInstance() {
    if (_instance) {
        _instance->release();
        delete _instance;
    }
    _instance = nullptr;
}

void QELSession::freeModel() {
    removeInstance();
    QELModelHeap::freeAll();
}

// ---- registry ------------------------------------------------------------------

void QELSession::addComponent(QELComponent* component, const CATUnicodeString& className) {
    if (!component) return;
    if (!_registry) _registry = new TYPMapCATUnicodeStringPVoid("MAP_LIST_OF_COMPONENTS");
    auto* sub = static_cast<SubMap*>(_registry->find(className));
    if (sub) {
        sub->insert(component->get_Name(), component, "QELComponent", 0);
        return;
    }
    sub = new SubMap("p_sub_map");
    sub->insert(component->get_Name(), component, "QELComponent", 0);
    _registry->insert(className, sub, "TYPMapCATUnicodeStringPVoid", 0);
}

TYPMapCATUnicodeStringPVoid* QELSession::getComponents(const CATUnicodeString& className) const {
    return _registry ? static_cast<SubMap*>(_registry->find(className)) : nullptr;
}

QELComponent* QELSession::getComponent(const CATUnicodeString& className, const CATUnicodeString& name) const {
    SubMap* sub = getComponents(className);
    return sub ? static_cast<QELComponent*>(sub->find(name)) : nullptr;
}

QELComponent* QELSession::getComponent(const CATUnicodeString& name) const {
    if (!_registry) return nullptr;
    for (const auto& e : *_registry) {
        if (auto* c = static_cast<QELComponent*>(static_cast<SubMap*>(e.object)->find(name))) return c;
    }
    return nullptr;
}

bool QELSession::hasComponent(const CATUnicodeString& className, const CATUnicodeString& name) const {
    return getComponent(className, name) != nullptr;
}

bool QELSession::hasComponent(const CATUnicodeString& name) const { return getComponent(name) != nullptr; }

bool QELSession::hasComponents(const CATUnicodeString& className) const { return getComponents(className) != nullptr; }

void QELSession::removeComponent(const CATUnicodeString& className, const CATUnicodeString& name) {
    if (SubMap* sub = getComponents(className)) sub->erase(name);
}

void QELSession::removeComponent(const CATUnicodeString& name) {
    if (!_registry) return;
    for (const auto& e : *_registry) {
        if (static_cast<SubMap*>(e.object)->erase(name)) return;
    }
}

// The sub-maps dropped here are no longer reachable from the session; they
// are kept until the process ends, like the components they list.
void QELSession::removeComponents(const CATUnicodeString& className) {
    if (!_registry) return;
    if (SubMap* sub = getComponents(className)) {
        QELKeeper::keep(sub);
        _registry->erase(className);
    }
}

void QELSession::removeAllComponents() {
    if (!_registry) return;
    for (const auto& e : *_registry) QELKeeper::keep(static_cast<SubMap*>(e.object));
    _registry->clear();
}

int QELSession::hashCode(const char* text) {
    if (!text) return 0;
    uint32_t h = 0;
    for (const char* p = text; *p; ++p) {
        h = h * 31u + static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(*p)));
    }
    return static_cast<int32_t>(h);
}

// ---- session values --------------------------------------------------------------

long QELSession::getCalculGeometricStatus(bool& status) const {
    status = getBooleanProperty("Calcul_Flag");
    return 0;
}

long QELSession::setCalculGeometricStatus(bool status) {
    addBooleanProperty("Calcul_Flag", status);
    return 0;
}

TYPVectorCATUnicodeString* QELSession::getGeoDescDocuments() const { return getStringArrayProperty("geodescdocuments"); }

void QELSession::setGeoDescDocuments(const CATUnicodeString& documentName) {
    addStringArrayProperty("geodescdocuments", documentName);
}

void QELSession::addDynamicProperty(const CATUnicodeString& name, const CATUnicodeString& key,
                                    const CATUnicodeString& value) {
    QELPropertyHolder::addDynamicProperty(name, key, value, false);
}

// ---- dump and release --------------------------------------------------------------

CATUnicodeString QELSession::print(int style) const {
    CATUnicodeString out;
    const CATUnicodeString& className = get_ClassName();
    QELPropertySet* set = getPropertySet();
    if (style == 0) {
        out = className + "\n";
        if (set) out += set->print(0);
    } else if (style == 1) {
        out = "\t\t<Class Id=\"" + className + "\" Name=\"" + className + "\">\n";
        out += "\t\t\t<ModelChildren>\n";
        if (set) out += set->print(1);
        out += "\t\t\t</ModelChildren>\n";
        out += "\t\t</Class>\n";
    } else {
        out = "unknown style";
    }
    if (!_registry) return out;
    for (const auto& byClass : *_registry) {
        for (const auto& e : *static_cast<SubMap*>(byClass.object)) {
            auto* c = static_cast<const QELComponent*>(e.object);
            if (!c) continue;
            if (style == 0) {
                out += "\t---- SESSION / " + c->get_ClassName() + " ---> " + c->get_Name() + "\n";
            } else if (style == 1) {
                out += "\t\t<Usage From=\"" + className + "\" Id=\"" + UTILString::genUuid() + "\" Name=\"SESSION / " +
                       c->get_ClassName() + "\" To=\"" + c->get_ClassName() + c->get_Name() + "\" />\n";
            } else {
                out += "unknown style";
            }
        }
    }
    return out;
}

void QELSession::release() {
    if (_registry) {
        for (const auto& e : *_registry) delete static_cast<SubMap*>(e.object);
        delete _registry;
        _registry = nullptr;
    }
    releaseProperties();
}
