#include "probe/library/answer_room.h"

#include "probe/output/problem.h"

#include <string.h>
#include <sys/mman.h>

#include <cstring>
#include <optional>

namespace soapwrapper::probe
{

AnswerRoom::AnswerRoom()
{
    void* reserved = mmap(nullptr, kReserved, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (reserved != MAP_FAILED) {
        buffer_ = static_cast<char*>(reserved);
        if (mprotect(reserved, kWritable, PROT_READ | PROT_WRITE) == 0) return;
        munmap(reserved, kReserved);
    }
    throw Problem(ExitCode::kOperation, "memory", std::nullopt,
                  "there is no address space for the buffer of a control command");
}

AnswerRoom::~AnswerRoom()
{
    munmap(buffer_, kReserved);
}

void AnswerRoom::put(const std::string& text)
{
    std::memcpy(buffer_, text.c_str(), text.size() + 1);
}

std::string AnswerRoom::text(std::size_t size) const
{
    return {buffer_, strnlen(buffer_, size)};
}

} // namespace soapwrapper::probe
