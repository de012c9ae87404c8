#include "bench/BenchPlatform.h"

#include "plugin/CommandHash.h"
#include "plugin/StorageMediaPlugin.h"

#include <benchmark/benchmark.h>
#include <json/json.h>
#include <jsonrpccpp/server.h>

#include <stdexcept>

// The same command from text to text, by the reader and the writer that the RPC library uses itself.

namespace {

constexpr char kCommand[] = "storagemedia.folder.appendplaylistandplay";

void textPlugin(benchmark::State& state)
{
    const LoadedPlugin plugin;
    const std::string text = R"({"CmdHash":)" + std::to_string(tvfirmware::commandHash(kCommand)) + "}";
    Json::Reader reader; // a host keeps them from request to request
    Json::FastWriter writer;
    for (auto _ : state) {
        Json::Value request;
        Json::Value reply;
        reader.parse(text, request, false);
        reply["result"] = Plugin_Execute(kCommand, &request, &reply);
        benchmark::DoNotOptimize(writer.write(reply));
    }
}

/// A connector without a connection: requests go straight to the library's handler.
class NoConnector : public jsonrpc::AbstractServerConnector {
public:
    bool StartListening() override { return true; }
    bool StopListening() override { return true; }
    bool SendResponse(const std::string& response, void* /*info*/) override
    {
        answer = response;
        return true;
    }

    std::string answer;
};

class RpcServer : public jsonrpc::AbstractServer<RpcServer> {
public:
    explicit RpcServer(jsonrpc::AbstractServerConnector& connector)
        : AbstractServer(connector)
    {
        bindAndAddMethod(jsonrpc::Procedure(kCommand, jsonrpc::PARAMS_BY_NAME, jsonrpc::JSON_BOOLEAN, nullptr),
                         &RpcServer::acknowledge);
    }

    void acknowledge(const Json::Value& /*parameters*/, Json::Value& result) { result = true; }
};

void textRpcLibrary(benchmark::State& state)
{
    NoConnector connector;
    RpcServer server(connector);
    const std::string text = R"({"jsonrpc":"2.0","id":1,"method":")" + std::string(kCommand) + R"("})";
    connector.OnRequest(text);
    if (connector.answer.find("true") == std::string::npos) {
        throw std::logic_error("the RPC library refuses the request: " + connector.answer);
    }
    for (auto _ : state) {
        connector.OnRequest(text);
        benchmark::DoNotOptimize(connector.answer);
    }
}

BENCHMARK(textPlugin)->Name("json text/plugin");
BENCHMARK(textRpcLibrary)->Name("json text/floor");

} // namespace
