#include <copyfile.h>
#include <sys/xattr.h>

#include <cerrno>
#include <string_view>
#include <vector>

namespace {

// Returns the names of the extended attributes, each NUL-terminated. The result is empty if there are none or
// they cannot be read.
std::vector<char> attributeNames(const char* path) {
    std::vector<char> names;
    for (;;) {
        const ssize_t size = listxattr(path, nullptr, 0);
        if (size <= 0) {
            return {};
        }
        names.resize(static_cast<std::size_t>(size));
        const ssize_t count = listxattr(path, names.data(), names.size());
        if (count >= 0) {
            names.resize(static_cast<std::size_t>(count));
            return names;
        }
        if (errno != ERANGE) {  // ERANGE: attributes were added between the calls
            return {};
        }
    }
}

bool beginsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

// Returns the flag for an attribute. On this system access control lists are attributes that begin with
// "system.". Attributes of security modules have no flag, because the system labels every file itself,
// including new ones.
copyfile_flags_t toKind(std::string_view attribute) {
    if (beginsWith(attribute, "system.")) {
        return COPYFILE_ACL;
    }
    return beginsWith(attribute, "security.") ? 0 : COPYFILE_XATTR;
}

}  // namespace

int copyfile(const char* from, const char* to, copyfile_state_t, copyfile_flags_t flags) {
    if (from == nullptr && to == nullptr) {
        errno = EINVAL;
        return -1;
    }
    if (from == nullptr || (flags & COPYFILE_CHECK) == 0) {
        errno = ENOTSUP;
        return -1;
    }
    copyfile_flags_t found = 0;
    const std::vector<char> names = attributeNames(from);
    for (std::size_t start = 0; start < names.size();) {
        const std::string_view name(names.data() + start);
        found |= toKind(name);
        start += name.size() + 1;
    }
    return static_cast<int>(found & flags);
}
