#include "audiounits/devices/PulseConnection.h"

namespace {

// What one question to the server gathers.
struct Answer {
    PulseConnection* connection;
    bool complete = false;
    PulseConnection::Defaults defaults;
    std::vector<PulseConnection::Endpoint> endpoints;

    void finish() {
        complete = true;
        connection->signal();
    }
};

std::string text(const char* maybe) {
    return maybe ? maybe : "";
}

constexpr double kMicrosecond = 1e-6;

// Sinks and sources are told of in records that differ in type only. `last` is 0 for each of them
// and something else after the last, or instead of any.
template <typename Info>
void gather(pa_context*, const Info* info, int last, void* context) {
    auto& answer = *static_cast<Answer*>(context);
    if (last != 0)
        return answer.finish();
    answer.endpoints.push_back({text(info->name), text(info->description), info->sample_spec.rate,
                                static_cast<double>(info->configured_latency) * kMicrosecond});
}

void gatherDefaults(pa_context*, const pa_server_info* info, void* context) {
    auto& answer = *static_cast<Answer*>(context);
    if (info)
        answer.defaults = {text(info->default_sink_name), text(info->default_source_name)};
    answer.finish();
}

// A question that stays open is cancelled with the connection, so that no answer comes to a place
// that is gone.
template <typename Ask>
Answer ask(PulseConnection& connection, Ask question) {
    PulseConnection::Lock lock(connection);
    Answer answer{&connection, false, {}, {}};
    if (pa_operation* const operation = question(&answer)) {
        if (!connection.await([&] { return answer.complete; }))
            connection.library().pa_context_disconnect(connection.context());
        connection.library().pa_operation_unref(operation);
    }
    return answer;
}

PulseConnection::Endpoint first(Answer answer) {
    return answer.endpoints.empty() ? PulseConnection::Endpoint{} : answer.endpoints.front();
}

}  // namespace

PulseConnection::PulseConnection(const PulseLibrary& pulse)
    : m_pulse(pulse), m_loop(pulse.pa_threaded_mainloop_new()) {}

std::unique_ptr<PulseConnection> PulseConnection::open() {
    const PulseLibrary* const pulse = PulseLibrary::get();
    if (!pulse)
        return nullptr;
    std::unique_ptr<PulseConnection> connection(new PulseConnection(*pulse));
    return connection->connect() ? std::move(connection) : nullptr;
}

PulseConnection::~PulseConnection() {
    if (!m_loop)
        return;
    if (m_context) {
        Lock lock(*this);
        m_pulse.pa_context_set_state_callback(m_context, nullptr, nullptr);
        m_pulse.pa_context_disconnect(m_context);
    }
    m_pulse.pa_threaded_mainloop_stop(m_loop);
    if (m_context)
        m_pulse.pa_context_unref(m_context);
    m_pulse.pa_threaded_mainloop_free(m_loop);
}

bool PulseConnection::connect() {
    if (!m_loop)
        return false;
    m_context =
        m_pulse.pa_context_new(m_pulse.pa_threaded_mainloop_get_api(m_loop), "Ombrix Synth");
    if (!m_context)
        return false;
    m_pulse.pa_context_set_state_callback(
        m_context,
        [](pa_context*, void* self) { static_cast<PulseConnection*>(self)->stateChanged(); }, this);
    if (m_pulse.pa_context_connect(m_context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0 ||
        m_pulse.pa_threaded_mainloop_start(m_loop) < 0)
        return false;
    Lock lock(*this);
    return await([this] { return m_pulse.pa_context_get_state(m_context) == PA_CONTEXT_READY; });
}

bool PulseConnection::good() const {
    return PA_CONTEXT_IS_GOOD(m_pulse.pa_context_get_state(m_context));
}

void PulseConnection::stateChanged() {
    if (!good() && m_gone)
        m_gone();
    signal();
}

bool PulseConnection::await(const std::function<bool()>& done) {
    struct Alarm {
        PulseConnection* connection;
        bool rung = false;
    } alarm{this};
    pa_time_event* const event = m_pulse.pa_context_rttime_new(
        m_context, m_pulse.pa_rtclock_now() + kPatience,
        [](pa_mainloop_api*, pa_time_event*, const timeval*, void* context) {
            auto& ringing = *static_cast<Alarm*>(context);
            ringing.rung = true;
            ringing.connection->signal();
        },
        &alarm);
    if (!event)
        return done();
    while (!done() && good() && !alarm.rung)
        m_pulse.pa_threaded_mainloop_wait(m_loop);
    m_pulse.pa_threaded_mainloop_get_api(m_loop)->time_free(event);
    return done();
}

PulseConnection::Defaults PulseConnection::defaults() {
    return ask(*this,
               [this](Answer* answer) {
                   return m_pulse.pa_context_get_server_info(m_context, gatherDefaults, answer);
               })
        .defaults;
}

std::vector<PulseConnection::Endpoint> PulseConnection::sinks() {
    return ask(*this,
               [this](Answer* answer) {
                   return m_pulse.pa_context_get_sink_info_list(m_context, gather<pa_sink_info>,
                                                                answer);
               })
        .endpoints;
}

std::vector<PulseConnection::Endpoint> PulseConnection::sources() {
    return ask(*this,
               [this](Answer* answer) {
                   return m_pulse.pa_context_get_source_info_list(m_context, gather<pa_source_info>,
                                                                  answer);
               })
        .endpoints;
}

PulseConnection::Endpoint PulseConnection::sink(const std::string& name) {
    return first(ask(*this, [&](Answer* answer) {
        return m_pulse.pa_context_get_sink_info_by_name(m_context, name.c_str(),
                                                        gather<pa_sink_info>, answer);
    }));
}

PulseConnection::Endpoint PulseConnection::source(const std::string& name) {
    return first(ask(*this, [&](Answer* answer) {
        return m_pulse.pa_context_get_source_info_by_name(m_context, name.c_str(),
                                                          gather<pa_source_info>, answer);
    }));
}
