#ifndef BenchFloors_H
#define BenchFloors_H

#include <string>
#include <vector>

// What the library is measured against: the machine's own floors (stdio
// line by line) and general-purpose XML parsers reading the same bytes. Each
// returns a count of what it saw, so that the work cannot be left out; a
// parser that rejects the file answers -1.

// The lines of a file, each with its line end, as written.
std::vector<std::string> benchReadLines(const std::string& path);
// Writes the lines with one fputs and one fflush each.
long benchFputsLines(const std::vector<std::string>& lines, const std::string& path);
// Reads the file with fgets alone; the number of lines.
long benchFgetsLines(const std::string& path);
// The libxml2 streaming reader: the number of nodes.
long benchLibxml2Reader(const std::string& path);
// expat with start, end and character handlers: the number of elements.
long benchExpat(const std::string& path);
// The file read into memory and parsed by pugixml's load_buffer: the number
// of elements under the root.
long benchPugiLoad(const std::string& path);
// The heap that pugixml's document of the file holds, in bytes.
long long benchPugiDomBytes(const std::string& path);

// Bytes in use on the heap (mallinfo2).
long long benchHeapInUse();

#endif
