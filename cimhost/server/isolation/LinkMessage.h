#pragma once

#include "cimhost/cimxml/Handler.h"
#include "cimhost/http/HttpClient.h"
#include "cimhost/http/HttpHandler.h"
#include "cimhost/objects/Objects.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace cimhost {

/// What the processes of an object manager tell each other of a request beside its message, as
/// headers of their own.
struct LinkNotes {
    std::string principal;
    std::string provider;    ///< that is asked; of an up-call none
    std::string className;   ///< that it is asked about, where the message does not tell
    std::string nameSpace;   ///< of an indication
    unsigned nesting = 0;    ///< provider calls that the asker is inside of
    std::uint64_t call = 0;  ///< the AwaitedCall it is part of: headers() takes it from the thread

    // The client's request behind this one, for the log: headers() takes it from the thread.
    std::uint64_t requestNumber = 0;  ///< 0: none
    std::string operation;

    static LinkNotes of(const HttpRequest& request);
    std::vector<HttpAnswerHead::Field> headers() const;
};

/// Answers the requests of one process to another: a CimXmlRequest that is forwarded, with the user
/// who asks and the nesting of calls as they are there.
class LinkHandler final : public HttpHandler {
public:
    /// Called by several threads at once.
    using Answer =
        std::function<void(const LinkNotes& notes, const CimXmlRequest& request, CimXmlReply&)>;

    /// `exported` answers export messages, `answer` all others.
    LinkHandler(Answer answer, Answer exported)
        : _answer(std::move(answer)), _export(std::move(exported)) {}

    void handle(const HttpRequest& request, HttpReply& reply) override;

private:
    Answer _answer;
    Answer _export;
};

}  // namespace cimhost
