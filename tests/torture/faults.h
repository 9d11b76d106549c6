// The table of what can go wrong on the wire.
#ifndef SOAPWRAPPER_TESTS_TORTURE_FAULTS_H
#define SOAPWRAPPER_TESTS_TORTURE_FAULTS_H

#include "tests/kit/scripted_service.h"

#include <string>
#include <vector>

namespace torture
{

// What a call comes to.
enum class End {
    kSucceeds,
    kFails,     // with the entry's status for a service that gives no answer
    kIsUseless, // with the status of an answer that can't be used
    kSurvives   // either way: how much of the reply counts is the runtime's business
};

struct Fault {
    std::string name;
    End end;
    kit::Answer answer;
};

// The faults that a good reply can meet.
std::vector<Fault> transport_faults(const std::string& good_reply);
std::vector<Fault> header_faults(const std::string& good_reply);
std::vector<Fault> body_faults(const std::string& good_reply);
std::vector<Fault> http_errors(const std::string& good_reply);
// What would cost the host its stack or its processor, were it read to the end.
std::vector<Fault> costly_replies(const std::string& good_reply);
// A good reply without each of these elements, and with each of them nil.
std::vector<Fault> gaps(const std::string& good_reply, const std::vector<std::string>& elements);

} // namespace torture

#endif
