// The File Manager's calls with the path and name types that tests use.
#pragma once

#include <CoreServices/CoreServices.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

inline OSStatus makeRef(const std::string& path, FSRef* ref, Boolean* isDirectory = nullptr) {
    return FSPathMakeRef(reinterpret_cast<const UInt8*>(path.c_str()), ref, isDirectory);
}

/// Returns the reference of an existing item.
inline FSRef makeRef(const std::string& path) {
    FSRef ref = {};
    makeRef(path, &ref);
    return ref;
}

/// Returns the path, or a text with the status.
inline std::string toPath(const FSRef& ref) {
    std::array<UInt8, 8192> path;
    const OSStatus status = FSRefMakePath(&ref, path.data(), static_cast<UInt32>(path.size()));
    return status == noErr ? reinterpret_cast<const char*>(path.data())
                           : "status " + std::to_string(static_cast<long>(status));
}

inline std::vector<UniChar> unicode(const std::string& ascii) {
    return std::vector<UniChar>(ascii.begin(), ascii.end());
}

inline OSErr makeChildRef(const FSRef& parent, const std::string& name, FSRef* ref) {
    const std::vector<UniChar> units = unicode(name);
    return FSMakeFSRefUnicode(&parent, units.size(), units.data(), 0, ref);
}

inline OSErr makeDirectory(const FSRef& parent, const std::string& name, FSRef* ref = nullptr,
                           UInt32* id = nullptr) {
    const std::vector<UniChar> units = unicode(name);
    return FSCreateDirectoryUnicode(&parent, units.size(), units.data(), kFSCatInfoNone, nullptr, ref,
                                    nullptr, id);
}

/// Returns a reference filled with a mark, which shows whether a call wrote to it.
inline FSRef markedRef() {
    FSRef ref;
    std::memset(&ref, 0x5A, sizeof ref);
    return ref;
}

inline bool isMarked(const FSRef& ref) {
    const FSRef marked = markedRef();
    return std::memcmp(&ref, &marked, sizeof ref) == 0;
}
