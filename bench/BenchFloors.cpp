#include "BenchFloors.h"

#include <cstdio>
#include <malloc.h>

#include <expat.h>
#include <libxml/xmlreader.h>
#include <pugixml.hpp>

namespace {

std::vector<char> fileBytes(const std::string& path) {
    std::vector<char> bytes;
    FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return bytes;
    std::fseek(file, 0, SEEK_END);
    const long size = std::ftell(file);
    std::fseek(file, 0, SEEK_SET);
    bytes.resize(size > 0 ? static_cast<size_t>(size) : 0);
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
    std::fclose(file);
    return bytes;
}

long countElements(const pugi::xml_node& root) {
    long count = 0;
    for (pugi::xml_node node = root.first_child(); node; node = node.next_sibling())
        count += 1 + countElements(node);
    return count;
}

void XMLCALL expatStart(void* data, const XML_Char*, const XML_Char**) { ++*static_cast<long*>(data); }
void XMLCALL expatEnd(void*, const XML_Char*) {}
void XMLCALL expatText(void*, const XML_Char*, int) {}

} // namespace

std::vector<std::string> benchReadLines(const std::string& path) {
    std::vector<std::string> lines;
    const std::vector<char> bytes = fileBytes(path);
    size_t start = 0;
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] != '\n') continue;
        lines.emplace_back(bytes.data() + start, i + 1 - start);
        start = i + 1;
    }
    if (start < bytes.size()) lines.emplace_back(bytes.data() + start, bytes.size() - start);
    return lines;
}

long benchFputsLines(const std::vector<std::string>& lines, const std::string& path) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return -1;
    long written = 0;
    for (const std::string& line : lines) {
        std::fputs(line.c_str(), file);
        std::fflush(file);
        ++written;
    }
    std::fclose(file);
    return written;
}

long benchFgetsLines(const std::string& path) {
    FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return -1;
    char line[4096];
    long count = 0;
    while (std::fgets(line, sizeof line, file)) ++count;
    std::fclose(file);
    return count;
}

long benchLibxml2Reader(const std::string& path) {
    xmlTextReaderPtr reader = xmlReaderForFile(path.c_str(), nullptr, XML_PARSE_NONET);
    if (!reader) return -1;
    long nodes = 0;
    int status = 0;
    while ((status = xmlTextReaderRead(reader)) == 1) {
        if (xmlTextReaderNodeType(reader) == XML_READER_TYPE_TEXT && xmlTextReaderConstValue(reader)) ++nodes;
        ++nodes;
    }
    xmlFreeTextReader(reader);
    return status == 0 ? nodes : -1;
}

long benchExpat(const std::string& path) {
    FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return -1;
    XML_Parser parser = XML_ParserCreate(nullptr);
    long elements = 0;
    XML_SetUserData(parser, &elements);
    XML_SetElementHandler(parser, expatStart, expatEnd);
    XML_SetCharacterDataHandler(parser, expatText);
    bool ok = true;
    for (;;) {
        void* buffer = XML_GetBuffer(parser, 1 << 16);
        if (!buffer) {
            ok = false;
            break;
        }
        const size_t got = std::fread(buffer, 1, 1 << 16, file);
        const bool last = got < (1 << 16);
        if (XML_ParseBuffer(parser, static_cast<int>(got), last) != XML_STATUS_OK) {
            ok = false;
            break;
        }
        if (last) break;
    }
    XML_ParserFree(parser);
    std::fclose(file);
    return ok ? elements : -1;
}

long benchPugiLoad(const std::string& path) {
    const std::vector<char> bytes = fileBytes(path);
    pugi::xml_document document;
    if (!document.load_buffer(bytes.data(), bytes.size())) return -1;
    return countElements(document);
}

long long benchPugiDomBytes(const std::string& path) {
    const long long before = benchHeapInUse();
    pugi::xml_document document;
    if (!document.load_file(path.c_str())) return -1;
    return benchHeapInUse() - before;
}

long long benchHeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<long long>(info.uordblks + info.hblkhd);
}
