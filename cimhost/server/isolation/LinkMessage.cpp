#include "cimhost/server/isolation/LinkMessage.h"

#include "cimhost/cimxml/HeaderMatch.h"
#include "cimhost/modules/ProviderCall.h"
#include "cimhost/server/CimXmlAdapter.h"
#include "cimhost/server/LoggedRequest.h"
#include "cimhost/server/isolation/AwaitedCall.h"

#include <array>
#include <charconv>
#include <optional>

namespace cimhost {
namespace {

struct TextRow {
    const char* header;
    std::string LinkNotes::*text;
};

constexpr auto textRows = std::to_array<TextRow>({
    {"Cimhost-Principal", &LinkNotes::principal},
    {"Cimhost-Provider", &LinkNotes::provider},
    {"Cimhost-Class", &LinkNotes::className},
    {"Cimhost-Namespace", &LinkNotes::nameSpace},
    {"Cimhost-Operation", &LinkNotes::operation},
});

constexpr const char* nestingHeader = "Cimhost-Nesting";
constexpr const char* callHeader = "Cimhost-Call";
constexpr const char* requestHeader = "Cimhost-Request";

template <typename Number>
void readNumber(const HttpRequest& request, const char* header, Number& number) {
    const std::string_view text = request.header(header).value_or("0");
    std::from_chars(text.data(), text.data() + text.size(), number);
}

/// A reply to another process, which takes what has been silent for long for a process that hangs:
/// a provider that delivers slowly is heard of now and then.
class LinkReply final : public CimXmlHttpReply {
public:
    LinkReply(HttpReply& reply, Kind kind) : CimXmlHttpReply(reply, kind), _reply(reply) {}

    bool isOverdue() const noexcept override { return Clock::now() - _lastHeard > mostSilence; }

    void write(std::string_view text) override {
        const bool isDue = isOverdue();
        CimXmlHttpReply::write(text);
        if (!isDue) return;
        _reply.flush();
        _lastHeard = Clock::now();
    }

private:
    static constexpr std::chrono::milliseconds mostSilence{250};

    HttpReply& _reply;
    Clock::time_point _lastHeard = Clock::now();
};

}  // namespace

LinkNotes LinkNotes::of(const HttpRequest& request) {
    LinkNotes notes;
    for (const TextRow& row : textRows) {
        notes.*row.text = percentDecode(request.header(row.header).value_or(std::string_view()));
    }
    readNumber(request, nestingHeader, notes.nesting);
    readNumber(request, callHeader, notes.call);
    readNumber(request, requestHeader, notes.requestNumber);
    return notes;
}

std::vector<HttpAnswerHead::Field> LinkNotes::headers() const {
    std::vector<HttpAnswerHead::Field> headers{{nestingHeader, std::to_string(nesting)}};
    if (const std::uint64_t number = AwaitedCall::number()) {
        headers.push_back({callHeader, std::to_string(number)});
    }
    for (const TextRow& row : textRows) {
        const std::string& text = this->*row.text;
        if (!text.empty()) headers.push_back({row.header, escapeForHeader(text)});
    }
    if (const LoggedRequest* const logged = LoggedRequest::current()) {
        headers.push_back({requestHeader, std::to_string(logged->number)});
        headers.push_back({"Cimhost-Operation", escapeForHeader(logged->operation)});
    }
    return headers;
}

void LinkHandler::handle(const HttpRequest& request, HttpReply& reply) {
    const LinkNotes notes = LinkNotes::of(request);
    const CallNesting::Elsewhere nesting(notes.nesting);
    const AwaitedCall::Part part(notes.call);
    std::optional<LoggedRequest> logged;
    if (notes.requestNumber != 0) logged.emplace(notes.requestNumber, notes.operation);
    const CimXmlRequest cimRequest{
        [&request](std::string_view name) { return request.header(name); }, request.body,
        notes.principal, request.serverName(), true};
    const bool isExport = request.header("CIMExport").has_value();
    using Kind = CimXmlHttpReply::Kind;
    LinkReply cimReply(reply, isExport ? Kind::exported : Kind::operation);
    (isExport ? _export : _answer)(notes, cimRequest, cimReply);
}

}  // namespace cimhost
