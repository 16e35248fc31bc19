// Synthetic session files shaped like real assemblies: a pool of parts that
// many products share (a few of them everywhere, as fasteners are), products
// built from parts and from smaller products level by level, and a root that
// uses products until the wanted number of occurrences is reached. A product
// has one structure wherever it is used, so its relative occurrences and its
// views in its own context are shared, as in a real session.
//
// The text is written directly, one entity per line: the file of a million
// occurrences is written in about a second and loads as fast as it parses.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "QELSessionFile.h"

namespace {

// SplitMix64: tiny, and the same numbers on every platform for one seed,
// which the standard distributions do not promise.
class Random {
public:
    explicit Random(unsigned long seed) : _state(seed) {}
    uint64_t next() {
        uint64_t z = (_state += 0x9E3779B97F4A7C15ULL);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }
    // In [0, bound).
    long below(long bound) { return bound <= 1 ? 0 : static_cast<long>(next() % static_cast<uint64_t>(bound)); }
    double unit() { return static_cast<double>(next() >> 11) / 9007199254740992.0; }

private:
    uint64_t _state;
};

struct Child {
    bool isPart;
    long index; // into the parts or the products
    long x, y, z; // placement in the parent product
};

struct Product {
    int level; // 0: the root
    std::string name;
    std::vector<Child> children;
    long size = 0; // occurrences under one use of the product
};

// Every third part is new to the PDM side: no identifiers yet.
bool isNewPart(long part) { return part % 3 == 2; }
bool hasDesignTable(long part) { return part % 11 == 3; }

std::string partName(long part) {
    char text[48];
    std::snprintf(text, sizeof text, "PRT-%06ld", part);
    return text;
}

std::string productName(int level, long index) {
    char text[48];
    std::snprintf(text, sizeof text, "ASM-%d-%05ld", level, index);
    return text;
}

class Generator {
public:
    Generator(long occurrences, int depth, unsigned long seed)
        : _wanted(std::max(0L, occurrences)), _depth(std::max(1, depth)), _random(seed) {}

    std::string run() {
        plan();
        _out.reserve(static_cast<size_t>(_wanted) * 150 + static_cast<size_t>(_parts) * 400 + 4096);
        _out += "{\n\"format\": \"qel-session/1\",\n";
        writeSettings();
        writeItems();
        writeDocuments();
        writeWorkspaces();
        _out += "}\n";
        return std::move(_out);
    }

private:
    // ---- the structure ----------------------------------------------------------

    void plan() {
        // About a dozen top-level products, each level some tenfold the next.
        const double topLevel = std::min(12.0, std::max(1.0, static_cast<double>(_wanted)));
        const int levels = _depth - 1; // product levels below the root
        _growth = levels > 0 ? std::pow(std::max(1.0, _wanted / topLevel), 1.0 / levels) : 1.0;
        _parts = std::clamp(_wanted / 20 + 3, 3L, 50000L);

        _products.push_back(Product{0, "ROOT-ASSEMBLY", {}, 0});
        _firstOfLevel.assign(static_cast<size_t>(_depth) + 1, 0);
        // Deepest products first: a product is made of smaller ones.
        for (int level = levels; level >= 1; --level) {
            const double uses = topLevel * std::pow(_growth, level - 1);
            const long count = std::clamp(static_cast<long>(uses / 4), 1L, 5000L);
            _firstOfLevel[static_cast<size_t>(level)] = static_cast<long>(_products.size());
            for (long i = 0; i < count; ++i) _products.push_back(makeProduct(level, i));
        }
        fillRoot();
    }

    Child placed(bool isPart, long index, size_t position) {
        return Child{isPart, index, static_cast<long>(position) * 40, _random.below(400) - 200, _random.below(120)};
    }

    // Fasteners and standard parts are used far more than the rest: the
    // square of a uniform number favours the first parts of the pool.
    long sharedPart() {
        const double u = _random.unit();
        return std::min(_parts - 1, static_cast<long>(u * u * static_cast<double>(_parts)));
    }

    long productsOfLevel(int level) const {
        const long first = _firstOfLevel[static_cast<size_t>(level)];
        const long end = level == 1 ? static_cast<long>(_products.size()) : _firstOfLevel[static_cast<size_t>(level) - 1];
        return end - first;
    }

    Product makeProduct(int level, long index) {
        Product product{level, productName(level, index), {}, 0};
        const bool deepest = level == _depth - 1;
        const long spread = std::max(1L, std::lround(_growth * (0.6 + 0.8 * _random.unit())));
        const long subProducts = deepest ? 0 : spread;
        const long parts = deepest ? std::max(2L, spread) : 1 + _random.below(3);
        for (long i = 0; i < subProducts; ++i) {
            const int below = level + 1;
            const long pick = _firstOfLevel[static_cast<size_t>(below)] + _random.below(productsOfLevel(below));
            product.children.push_back(placed(false, pick, product.children.size()));
            product.size += 1 + _products[static_cast<size_t>(pick)].size;
        }
        for (long i = 0; i < parts; ++i) {
            product.children.push_back(placed(true, sharedPart(), product.children.size()));
            product.size += 1;
        }
        return product;
    }

    // The root takes products while they fit in what is left, the largest
    // that fits when a random one does not, and parts for the remainder, so
    // that the file holds exactly the number of occurrences asked for.
    void fillRoot() {
        std::vector<long> bySize;
        for (long i = 1; i < static_cast<long>(_products.size()); ++i) bySize.push_back(i);
        std::sort(bySize.begin(), bySize.end(), [this](long a, long b) {
            return _products[static_cast<size_t>(a)].size < _products[static_cast<size_t>(b)].size;
        });
        Product& root = _products.front();
        long left = _wanted;
        const long topProducts = _depth > 1 ? productsOfLevel(1) : 0;
        while (left > 0) {
            long pick = -1;
            if (topProducts > 0) {
                const long candidate = _firstOfLevel[1] + _random.below(topProducts);
                if (_products[static_cast<size_t>(candidate)].size + 1 <= left) pick = candidate;
            }
            if (pick < 0 && !bySize.empty()) {
                auto fits = std::upper_bound(bySize.begin(), bySize.end(), left - 1, [this](long size, long product) {
                    return size < _products[static_cast<size_t>(product)].size;
                });
                if (fits != bySize.begin()) pick = *(fits - 1);
            }
            if (pick >= 0) {
                root.children.push_back(placed(false, pick, root.children.size()));
                left -= 1 + _products[static_cast<size_t>(pick)].size;
            } else {
                root.children.push_back(placed(true, sharedPart(), root.children.size()));
                left -= 1;
            }
        }
    }

    std::string childName(const Child& child) const {
        return child.isPart ? partName(child.index) : _products[static_cast<size_t>(child.index)].name;
    }

    // ---- the text ---------------------------------------------------------------

    void writeSettings() {
        _out += "\"settings\": {\n"
                " \"command\": \"save\", \"process\": \"none\", \"phase\": \"1\",\n"
                " \"manage\": {\"manageCATIAIcons\": true, \"manageExternalFiles\": true},\n"
                " \"environment\": {\"catiaEnvironmentName\": \"Synthetic\", \"catiaFullVersion\": \"24.2 SP2\","
                " \"tempDirectory\": \"/tmp/qel/\", \"filesDirectory\": \"/tmp/qel/files/\", \"oemPrefix\": \"VT\"},\n"
                " \"properties\": {\"IsDesignTableManagedAsked\": true, \"IsDesignTableManaged\": true}\n"
                "},\n";
    }

    void writeItem(const std::string& name, bool known) {
        _out += " {\"name\": \"" + name + "\", \"properties\": {\"Part_Number\": \"" + name + "\"";
        if (known) _out += ", \"Item_ID\": \"" + name + "\", \"ItemRev_ID\": \"A\", \"ItemRev_UID\": \"UID-" + name + "\"";
        _out += ", \"ItemRev_Name\": \"" + name + " rev A\"}}";
    }

    void writeItems() {
        _out += "\"items\": [\n";
        for (size_t i = 0; i < _products.size(); ++i) {
            writeItem(_products[i].name, true);
            _out += ",\n";
        }
        writeItem("ROOT-DRAWING", true);
        for (long part = 0; part < _parts; ++part) {
            _out += ",\n";
            writeItem(partName(part), !isNewPart(part));
        }
        // A design table is filed under an item of its own: without one the
        // writer counts a visible table but cannot describe it.
        for (long part = 0; part < _parts; ++part) {
            if (!hasDesignTable(part)) continue;
            _out += ",\n";
            writeItem(designTableItemOf(part), false);
        }
        _out += "\n],\n";
    }

    // A document of an item, with its dataset identifiers when the PDM side
    // knows it already.
    void writeDocument(const std::string& item, const std::string& file, const char* type, bool known,
                       const std::string& extra) {
        _out += " {\"name\": \"" + file + "\", \"type\": \"" + type + "\", \"item\": \"" + item + "\", \"files\": [\"" +
                file + "\"]";
        if (known) _out += ", \"documentUID\": \"DST-" + item + "\", \"namedRefUID\": \"NR-" + item + "\"";
        _out += extra + ", \"properties\": {\"Part_Number\": \"" + item + "\"";
        if (known)
            _out += ", \"DST_UID\": \"DST-" + item + "\", \"NamedRef_UID\": \"NR-" + item +
                    "\", \"Dat_File_Version\": \"1\"";
        else
            _out += ", \"Dat_File_Version\": \"0\"";
        _out += ", \"catia_uuid\": \"uuid-" + item + "\"}}";
    }

    std::string designTableOf(long part) const { return partName(part) + "_sizes.xls"; }
    std::string designTableItemOf(long part) const { return partName(part) + "-DT"; }

    void writeDocuments() {
        _out += "\"documents\": [\n";
        for (size_t i = 0; i < _products.size(); ++i) {
            writeDocument(_products[i].name, _products[i].name + ".CATProduct", "product", true, "");
            _out += ",\n";
        }
        writeDocument("ROOT-DRAWING", "ROOT-ASSEMBLY.CATDrawing", "drawing", true,
                      ", \"sheets\": [\"Sheet.1\", \"Sheet.2\"], \"activeSheet\": \"Sheet.1\","
                      " \"links\": [{\"name\": \"VT_CATIAV5_DWGLINK\", \"item\": \"ROOT-ASSEMBLY\"}]");
        for (long part = 0; part < _parts; ++part) {
            std::string extra;
            if (hasDesignTable(part))
                extra = ", \"designTables\": [{\"document\": \"" + designTableOf(part) +
                        "\", \"name\": \"Sizes\", \"properties\": {\"Sheet\": 1, \"Cfg\": " + std::to_string(1 + part % 4) +
                        ", \"DTMap\": \"Length!!!Diameter!!!Mass\"}}]";
            _out += ",\n";
            writeDocument(partName(part), partName(part) + ".CATPart", "part", !isNewPart(part), extra);
        }
        for (long part = 0; part < _parts; ++part) {
            if (!hasDesignTable(part)) continue;
            const std::string table = designTableOf(part);
            _out += ",\n {\"name\": \"" + table + "\", \"type\": \"design-table\", \"item\": \"" +
                    designTableItemOf(part) + "\", \"files\": [\"" + table +
                    "\"], \"designTableVisible\": " + (part % 2 ? "true" : "false") +
                    ", \"properties\": {\"Part_Number\": \"" + designTableItemOf(part) +
                    "\", \"Dat_File_Version\": \"0\", \"DST_Version\": \"1\", \"Sheet\": {\"strings\": [\"Sizes\"]},"
                    " \"Cfg\": {\"strings\": [\"Small\", \"Medium\", \"Large\", \"Huge\"]}}}";
        }
        _out += "\n],\n";
    }

    void writeWorkspaces() {
        _out += "\"workspaces\": [\n"
                " {\"name\": \"ROOT-ASSEMBLY.CATProduct\", \"type\": \"product\", \"active\": true, \"index\": 0,"
                " \"document\": \"ROOT-ASSEMBLY.CATProduct\", \"item\": \"ROOT-ASSEMBLY\","
                " \"configuration\": [\"RevisionRule=Latest Working\"], \"occurrences\": [";
        _ancestors.assign(1, 0);
        writeChildren(_products.front(), 0, 1);
        _out += "\n ]},\n"
                " {\"name\": \"ROOT-ASSEMBLY.CATDrawing\", \"type\": \"drawing\", \"index\": 1,"
                " \"document\": \"ROOT-ASSEMBLY.CATDrawing\", \"item\": \"ROOT-DRAWING\"}\n"
                "]\n";
    }

    void indent(int depth) {
        _out += '\n';
        _out.append(static_cast<size_t>(depth) + 1, ' ');
    }

    // The children of one use of `product`, at `depth` (1: top level).
    // _ancestors holds the products from the root down to `product`.
    void writeChildren(const Product& product, long productIndex, int depth) {
        std::vector<long> seen; // per item, how many instances so far: Bolt.1, Bolt.2
        for (size_t k = 0; k < product.children.size(); ++k) {
            const Child& child = product.children[k];
            const std::string item = childName(child);
            long number = 1;
            for (size_t j = 0; j < k; ++j) {
                const Child& before = product.children[j];
                if (before.isPart == child.isPart && before.index == child.index) ++number;
            }
            const std::string id = std::to_string(productIndex) + "." + std::to_string(k + 1);
            if (k > 0) _out += ',';
            indent(depth);
            _out += "{\"instance\": \"" + item + "." + std::to_string(number) + "\", \"uid\": \"U" + id +
                    "\", \"item\": \"" + item + "\", \"relative\": \"R" + id +
                    "\", \"matrix\": [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, " + std::to_string(child.x) + ", " +
                    std::to_string(child.y) + ", " + std::to_string(child.z) + ", 1], \"properties\": {\"Modified_Flag\": 1}";
            writeViews(depth);
            if (!child.isPart) {
                const Product& sub = _products[static_cast<size_t>(child.index)];
                _out += ", \"children\": [";
                _ancestors.push_back(child.index);
                writeChildren(sub, child.index, depth + 1);
                _ancestors.pop_back();
                indent(depth);
                _out += "]";
            }
            _out += "}";
        }
    }

    // A deep occurrence is seen from its parent product, its grandparent and,
    // one time in two, the root. Views in the two nearer contexts are shared
    // by every use of the products; only the root's are particular, and a few
    // of those hide the occurrence.
    void writeViews(int depth) {
        if (depth < 3) return;
        const size_t parent = _ancestors.size() - 1;
        _out += ", \"views\": [{\"context\": \"" + _products[static_cast<size_t>(_ancestors[parent])].name +
                "\"}, {\"context\": \"" + _products[static_cast<size_t>(_ancestors[parent - 1])].name + "\"}";
        if (parent >= 2 && _random.below(2) == 0) {
            _out += ", {\"context\": \"ROOT-ASSEMBLY\"";
            if (_random.below(25) == 0) _out += ", \"visible\": false, \"hide\": true";
            _out += "}";
        }
        _out += "]";
    }

    long _wanted;
    int _depth;
    Random _random;
    double _growth = 1;
    long _parts = 0;
    std::vector<Product> _products;
    std::vector<long> _firstOfLevel; // index of the first product of each level
    std::vector<long> _ancestors;
    std::string _out;
};

} // namespace

std::string qelGenerateSession(long occurrences, int depth, unsigned long seed) {
    return Generator(occurrences, depth, seed).run();
}
