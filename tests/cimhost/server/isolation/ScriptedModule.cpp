// Stands for the process of a module: serves the link at descriptor 3 and does what it is asked.
// Arguments: the file for its journal, and the name of the module.
//
// A message of CIM is answered by ScriptedOperations and noted in the journal; of other bodies
// "die", "leave", "hang" and "ask" do what they say, "chatter" writes to standard error from then
// on and answers, "stay" keeps the process when it is to end, and any other comes back behind the
// number of the process.

#include "cimhost/cimxml/Handler.h"
#include "cimhost/client/ClientTransport.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/server/isolation/AwaitedCall.h"
#include "cimhost/server/isolation/Link.h"
#include "cimhost/server/isolation/LinkMessage.h"
#include "tests/cimhost/cimxml/TestSchema.h"
#include "tests/cimhost/client/RecordingOperations.h"

#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

namespace cimhost {
namespace {

[[noreturn]] void die() {
    const rlimit none{};
    setrlimit(RLIMIT_CORE, &none);
    std::fputs("cimhost: crash: as the test wants\n", stderr);
    std::abort();
}

[[noreturn]] void hang() {
    for (;;) pause();
}

/// Until the process ends.
void chatter() {
    std::thread([] {
        for (;;) std::fputs("what nobody wants to know\n\n\n\n\n\n\n\n", stderr);
    }).detach();
}

/// Fans that have the key that they are asked by; those called "die" and "gone" do not answer. Eve
/// may not enable their indications, what Tom activates first is refused, and for Sam all fans come
/// slowly.
class ScriptedOperations final : public RecordingOperations {
public:
    MethodResult invokeMethod(const RequestContext& request, const ObjectPath& target,
                              const std::string& method, const Arguments& in) override {
        MethodResult result = RecordingOperations::invokeMethod(request, target, method, in);
        if (user == "eve" && method == "EnableIndications") {
            throw CimError(CimCode::accessDenied, "not for eve");
        }
        if (user == "tom" && method == "ActivateFilter" && std::exchange(_isFirst, false)) {
            throw CimError(CimCode::failed, "not yet");
        }
        return result;
    }

    void getInstance(const RequestContext& request, const ObjectPath& target,
                     const InstanceOptions& wanted, InstanceSink& sink) override {
        const Value id = *target.findKey("Id");
        if (id == Value::string("die")) die();
        if (id == Value::string("gone")) throw CimError(CimCode::notFound, "no fan \"gone\"");
        Instance fan;
        fan.path = target;
        fan.set("Id", id);
        instances = {fan};
        RecordingOperations::getInstance(request, target, wanted, sink);
    }

    void enumerateInstances(const RequestContext& request, const ObjectPath& target,
                            const InstanceOptions& wanted, InstanceSink& sink) override {
        instances.clear();
        RecordingOperations::enumerateInstances(request, target, wanted, sink);
        for (const char* const id : {"1", "2", "3", "4", "5"}) {
            if (user == "sam") std::this_thread::sleep_for(std::chrono::milliseconds(400));
            Instance fan;
            fan.path = {{}, "root/test", "TEST_Fan", {{"Id", Value::string(id)}}};
            fan.set("Id", Value::string(id));
            sink.deliver(fan, nullptr, {});
        }
    }

    std::string user;

private:
    bool _isFirst = true;
};

class ScriptedModule final : public HttpHandler {
public:
    explicit ScriptedModule(const char* journal) : _journal(journal, std::ios::app) {
        fillTestSchema(_repository);
        _operations.result.returnValue = Value::unsignedInteger(CimType::uint32, 7);
    }

    void serve() {
        while (_link.serveOne()) {
        }
        if (_stays) hang();
    }

    void handle(const HttpRequest& request, HttpReply& reply) override {
        if (request.header("CIMOperation")) return _messages.handle(request, reply);
        const AwaitedCall::Part part(LinkNotes::of(request).call);
        if (request.body == "die") die();
        if (request.body == "chatter") chatter();
        if (request.body == "leave") std::_Exit(3);
        if (request.body == "hang") hang();
        if (request.body == "stay") _stays = true;
        reply.write(std::to_string(getpid()) + " " +
                    (request.body == "ask" ? _ask() : request.body));
    }

private:
    std::string _ask() {
        ClientTransport transport([this] { return _link.connect(); }, {});
        std::string answer;
        transport.post(LinkNotes().headers(), "asked",
                       [&answer](std::string_view piece) { answer += piece; });
        return answer;
    }

    void _answer(const LinkNotes& notes, const CimXmlRequest& request, CimXmlReply& reply) {
        const std::lock_guard lock(_mutex);
        _operations.user = notes.principal;
        CimXmlHandler(_operations, _repository).handle(request, reply);
        _journal << _operations.operation << ' ' << _operations.path.className << " of "
                 << notes.className << " by " << notes.provider << " for " << notes.principal;
        for (const std::string& text : _operations.texts) _journal << ' ' << text;
        for (const Argument& each : _operations.arguments) {
            const auto* const text = each.value.get<Text>();
            const auto* const flag = each.value.get<bool>();
            if (text) _journal << ' ' << each.name << '=' << text->str();
            if (flag) _journal << ' ' << each.name << '=' << (*flag ? "yes" : "no");
        }
        _journal << std::endl;
    }

    std::mutex _mutex;  ///< guards the two below
    std::ofstream _journal;
    ScriptedOperations _operations;
    Repository _repository;
    LinkHandler _messages{[this](const LinkNotes& notes, const CimXmlRequest& request,
                                 CimXmlReply& reply) { _answer(notes, request, reply); },
                          {}};
    std::atomic<bool> _stays = false;
    Link _link{Descriptor(3), *this};
};

}  // namespace
}  // namespace cimhost

int main(int, char** arguments) {
    cimhost::ScriptedModule(arguments[1]).serve();
    std::_Exit(0);  // whatever hangs
}
