#include "system/file_rights.h"

#include <windows.h>

#include <aclapi.h>

#include <cstring>
#include <memory>

namespace facetor {

namespace {

struct LocalFreer {
    void operator()(void* memory) const { LocalFree(memory); }
};

/// Who may do what with a file.
struct Rights {
    std::unique_ptr<void, LocalFreer> descriptor;
    PACL list = nullptr; ///< in the descriptor; null when it cannot be told
};

Rights rightsOf(const std::string& path)
{
    Rights rights;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetNamedSecurityInfoA(path.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                              nullptr, &rights.list, nullptr, &descriptor) != ERROR_SUCCESS)
        return {};
    rights.descriptor.reset(descriptor);
    return rights;
}

bool areEqual(const ACL& a, const ACL& b)
{
    return a.AclSize == b.AclSize && std::memcmp(&a, &b, a.AclSize) == 0;
}

} // namespace

void copyFileRights(const std::string& from, const std::string& to)
{
    const Rights wanted = rightsOf(from), present = rightsOf(to);
    if (!wanted.list || !present.list || areEqual(*wanted.list, *present.list)) return;
    // As they stand: what the other has from its folder, this one has from the same folder.
    SetFileSecurityA(to.c_str(), DACL_SECURITY_INFORMATION, wanted.descriptor.get());
}

} // namespace facetor
