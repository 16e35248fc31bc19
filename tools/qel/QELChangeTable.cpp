#include "QELChangeTable.h"

#include <algorithm>

#include "QELComponent.h"
#include "QELHandleTable.h"
#include "QELProperty.h"
#include "QELPropertySet.h"
#include "QELPropertyText.h"
#include "QELSession.h"

namespace {

constexpr size_t kBlockSize = 16 << 20;

void putNumber(std::string& out, uint64_t value) {
    while (value >= 0x80) {
        out += static_cast<char>((value & 0x7F) | 0x80);
        value >>= 7;
    }
    out += static_cast<char>(value);
}

uint64_t getNumber(const char*& in) {
    uint64_t value = 0;
    for (int shift = 0;; shift += 7) {
        const auto byte = static_cast<unsigned char>(*in++);
        value |= static_cast<uint64_t>(byte & 0x7F) << shift;
        if (!(byte & 0x80)) return value;
    }
}

std::string shortClassName(const CATUnicodeString& className) {
    std::string name = className.ConvertToUTF8();
    constexpr std::string_view kSuffix = "_CLASSNAME";
    if (name.size() > kSuffix.size() && name.compare(name.size() - kSuffix.size(), kSuffix.size(), kSuffix) == 0)
        name.resize(name.size() - kSuffix.size());
    return name;
}

} // namespace

void QELChangeTable::snapshot(const Progress& progress) {
    _records.clear();
    _blocks.clear();
    record(0, *QELSession::getInstance());
    const std::vector<QELComponent*> components = QELHandleTable::liveComponents();
    _records.reserve(components.size() + 1);
    for (size_t i = 0; i < components.size(); ++i) {
        record(components[i]->get_Handle(), *components[i]);
        if (progress && (i & 0xFFFF) == 0)
            progress(static_cast<long long>(i), static_cast<long long>(components.size()));
    }
}

void QELChangeTable::record(uint64_t handle, const QELPropertyHolder& holder) {
    std::string& bytes = _scratch;
    bytes.clear();
    const QELPropertySet* set = holder.getPropertySet();
    const int count = set ? set->getPropertiesCount() : 0;
    putNumber(bytes, static_cast<uint64_t>(count));
    for (int i = 0; i < count; ++i) {
        const QELProperty* property = set->getProperty(i);
        const std::string& name = property->get_Name().ToLatin1();
        auto [found, inserted] = _nameIds.try_emplace(name, static_cast<uint32_t>(_names.size()));
        if (inserted) _names.push_back(property->get_Name().ConvertToUTF8());
        const std::string text = qelPropertyText(holder, i);
        putNumber(bytes, found->second);
        putNumber(bytes, static_cast<uint64_t>(property->get_Type()));
        putNumber(bytes, text.size());
        bytes += text;
    }
    store(handle, bytes);
}

void QELChangeTable::store(uint64_t handle, const std::string& bytes) {
    if (_blocks.empty() || _blocks.back().size() + bytes.size() > _blocks.back().capacity()) {
        _blocks.emplace_back();
        _blocks.back().reserve(std::max(kBlockSize, bytes.size()));
    }
    std::string& block = _blocks.back();
    _records.push_back({handle, static_cast<uint32_t>(_blocks.size() - 1), static_cast<uint32_t>(block.size())});
    block += bytes;
}

void QELChangeTable::decode(const Record& record, std::vector<OldProperty>& out) const {
    out.clear();
    const char* in = _blocks[record.block].data() + record.offset;
    const uint64_t count = getNumber(in);
    for (uint64_t i = 0; i < count; ++i) {
        OldProperty property;
        property.name = static_cast<uint32_t>(getNumber(in));
        property.type = static_cast<uint32_t>(getNumber(in));
        const size_t length = getNumber(in);
        property.value = std::string_view(in, length);
        property.matched = false;
        in += length;
        out.push_back(property);
    }
    std::sort(out.begin(), out.end(), [](const OldProperty& a, const OldProperty& b) { return a.name < b.name; });
}

void QELChangeTable::compare(uint64_t handle, const std::function<void(std::string&, std::string&)>& describe,
                             const QELPropertyHolder& holder, const Record* before, std::vector<OldProperty>& old,
                             const Row& row) const {
    if (before) decode(*before, old);
    else old.clear();

    std::string className;
    std::string component;
    bool described = false;
    auto emit = [&](QELChange& change) {
        if (!described) describe(className, component);
        described = true;
        change.handle = handle;
        change.className = className;
        change.component = component;
        row(change);
    };

    const QELPropertySet* set = holder.getPropertySet();
    const int count = set ? set->getPropertiesCount() : 0;
    for (int i = 0; i < count; ++i) {
        const QELProperty* property = set->getProperty(i);
        const std::string text = qelPropertyText(holder, i);
        OldProperty* previous = nullptr;
        const auto id = _nameIds.find(property->get_Name().ToLatin1());
        if (id != _nameIds.end()) {
            auto found = std::lower_bound(old.begin(), old.end(), id->second,
                                          [](const OldProperty& p, uint32_t name) { return p.name < name; });
            if (found != old.end() && found->name == id->second) previous = &*found;
        }
        if (previous) {
            previous->matched = true;
            if (previous->value == text && previous->type == static_cast<uint32_t>(property->get_Type())) continue;
        }
        const std::string name = id != _nameIds.end() ? _names[id->second] : property->get_Name().ConvertToUTF8();
        QELChange change;
        change.property = name;
        change.type = qelPropertyTypeName(property->get_Type());
        change.hadValue = previous != nullptr;
        if (previous) change.oldValue = previous->value;
        change.hasValue = true;
        change.newValue = text;
        emit(change);
    }
    for (const OldProperty& gone : old) {
        if (gone.matched) continue;
        QELChange change;
        change.property = _names[gone.name];
        change.type = qelPropertyTypeName(static_cast<int>(gone.type));
        change.hadValue = true;
        change.oldValue = gone.value;
        emit(change);
    }
}

void QELChangeTable::diff(const Row& row, const Progress& progress) const {
    std::vector<OldProperty> old;
    const Record* session = !_records.empty() && _records.front().handle == 0 ? &_records.front() : nullptr;
    compare(
        0,
        [](std::string& className, std::string& name) {
            className = shortClassName(QELSession::getInstance()->get_ClassName());
            name = "session";
        },
        *QELSession::getInstance(), session, old, row);

    // Both sides are in handle order: one merge walk. A component gone since
    // the snapshot cannot be named any more and is passed over.
    const std::vector<QELComponent*> components = QELHandleTable::liveComponents();
    size_t next = session ? 1 : 0;
    for (size_t i = 0; i < components.size(); ++i) {
        const QELComponent* component = components[i];
        const uint64_t handle = component->get_Handle();
        while (next < _records.size() && _records[next].handle < handle) ++next;
        const Record* before = next < _records.size() && _records[next].handle == handle ? &_records[next] : nullptr;
        compare(
            handle,
            [component](std::string& className, std::string& name) {
                className = shortClassName(component->get_ClassName());
                name = component->get_Name().ConvertToUTF8();
            },
            *component, before, old, row);
        if (progress && (i & 0xFFFF) == 0)
            progress(static_cast<long long>(i), static_cast<long long>(components.size()));
    }
}
