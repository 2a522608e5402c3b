#include "power/platform/pulse_sound.h"

#include <pulse/pulseaudio.h>

#include <chrono>
#include <functional>
#include <string>
#include <utility>

namespace wakeline {
namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kAnswerBound = std::chrono::milliseconds(500);
constexpr auto kRetryPause = std::chrono::seconds(3);
const char* const kServer = "the sound server";

class Locked {
  public:
    explicit Locked(pa_threaded_mainloop* loop) : loop_(loop) { pa_threaded_mainloop_lock(loop_); }
    ~Locked() { pa_threaded_mainloop_unlock(loop_); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;

  private:
    pa_threaded_mainloop* loop_;
};

// What the last reading of one line found.
struct Line {
    std::uint32_t index = PA_INVALID_INDEX;  // the sink input's index
    std::string name;                        // the sink's name
    pa_cvolume volume{};
    bool mute = false;
    std::vector<MixerControl> controls;
};

// The answer of one server operation, filled on libpulse's thread.
struct Answer {
    explicit Answer(pa_threaded_mainloop* l) : loop(l) {}
    pa_threaded_mainloop* loop;
    bool done = false;
    bool success = false;
    Line line;
    std::string text;
};

std::string ErrorText(pa_context* context) {
    return pa_strerror(pa_context_errno(context));
}

void Finish(Answer& answer, bool success) {
    answer.done = true;
    answer.success = success;
    pa_threaded_mainloop_signal(answer.loop, 0);
}

void OnSuccess(pa_context*, int success, void* data) {
    Finish(*static_cast<Answer*>(data), success != 0);
}

// A sink's or sink input's volume and mute; `hasVolume` is false for a stream whose volume
// cannot be set (a passthrough stream).
void Take(Answer& answer, const pa_cvolume& volume, bool mute, bool hasVolume) {
    answer.line.volume = volume;
    answer.line.mute = mute;
    if (hasVolume) {
        answer.line.controls.push_back({ControlKind::kVolume, PA_VOLUME_NORM});
    }
    answer.line.controls.push_back({ControlKind::kMute, 1});
}

void OnSink(pa_context*, const pa_sink_info* info, int eol, void* data) {
    auto& answer = *static_cast<Answer*>(data);
    if (info != nullptr) {
        answer.line.name = info->name;
        Take(answer, info->volume, info->mute != 0, true);
    } else {
        Finish(answer, eol > 0 && !answer.line.controls.empty());
    }
}

void OnSinkInput(pa_context*, const pa_sink_input_info* info, int eol, void* data) {
    auto& answer = *static_cast<Answer*>(data);
    if (info != nullptr) {
        answer.line.index = info->index;
        Take(answer, info->volume, info->mute != 0, info->has_volume && info->volume_writable);
    } else {
        Finish(answer, eol > 0 && !answer.line.controls.empty());
    }
}

void OnServer(pa_context*, const pa_server_info* info, void* data) {
    auto& answer = *static_cast<Answer*>(data);
    const bool found =
        info != nullptr && info->default_sink_name != nullptr && info->default_sink_name[0] != '\0';
    if (found) {
        answer.line.name = info->default_sink_name;
    } else {
        answer.text = "it has no default sink";
    }
    Finish(answer, found);
}

}  // namespace

struct PulseSound::Impl {
    explicit Impl(Result<WaveSound> sound) : chime(std::move(sound)) {
        spec.format = PA_SAMPLE_S16LE;
        spec.rate = chime.Ok() ? chime.Value().rate : 44100;
        spec.channels = chime.Ok() ? static_cast<std::uint8_t>(chime.Value().channels) : 1;
    }

    ~Impl() {
        if (loop == nullptr) {
            return;
        }
        {
            Locked locked(loop);
            Drop();
        }
        pa_threaded_mainloop_stop(loop);
        pa_threaded_mainloop_free(loop);
    }

    static void Signal(void* self) {
        pa_threaded_mainloop_signal(static_cast<Impl*>(self)->loop, 0);
    }

    // Starts libpulse's thread once; called without the lock.
    Status Start() {
        if (loop != nullptr) {
            return {};
        }
        loop = pa_threaded_mainloop_new();
        if (loop == nullptr || pa_threaded_mainloop_start(loop) < 0) {
            if (loop != nullptr) {
                pa_threaded_mainloop_free(loop);
                loop = nullptr;
            }
            return Status::Failure("start the sound thread for", kServer, "out of resources");
        }
        return {};
    }

    // Waits, with the lock held, until `done` or the call's deadline; false when the deadline
    // came first. A timer on libpulse's own loop wakes the wait at the deadline.
    bool Wait(const std::function<bool()>& done) {
        if (done()) {
            return true;
        }
        struct Alarm {
            pa_threaded_mainloop* loop;
            bool rang = false;
        } alarm{loop};
        const auto left =
            std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now());
        if (left.count() <= 0) {
            return false;
        }
        timeval when{};
        pa_timeval_add(pa_gettimeofday(&when), static_cast<pa_usec_t>(left.count()));
        pa_mainloop_api* api = pa_threaded_mainloop_get_api(loop);
        pa_time_event* timer = api->time_new(
            api, &when,
            [](pa_mainloop_api*, pa_time_event*, const timeval*, void* data) {
                auto* a = static_cast<Alarm*>(data);
                a->rang = true;
                pa_threaded_mainloop_signal(a->loop, 0);
            },
            &alarm);
        while (!done() && !alarm.rang) {
            pa_threaded_mainloop_wait(loop);
        }
        api->time_free(timer);
        return done();
    }

    // Waits for `operation` (which reports into `answer`); a failure in the words of libpulse.
    Status Await(pa_operation* operation, Answer& answer, const std::string& action,
                 const std::string& object) {
        if (operation == nullptr) {
            return Status::Failure(action, object, ErrorText(context));
        }
        const bool answered = Wait([&] { return answer.done; });
        if (!answered) {
            pa_operation_cancel(operation);
        }
        pa_operation_unref(operation);
        if (!answered) {
            return Status::Failure(action, object, "no answer within 500 ms");
        }
        if (!answer.success) {
            return Status::Failure(action, object,
                                   answer.text.empty() ? ErrorText(context) : answer.text);
        }
        return {};
    }

    void Drop() {
        if (stream != nullptr) {
            pa_stream_set_state_callback(stream, nullptr, nullptr);
            pa_stream_set_underflow_callback(stream, nullptr, nullptr);
            if (PA_STREAM_IS_GOOD(pa_stream_get_state(stream))) {
                pa_stream_disconnect(stream);
            }
            pa_stream_unref(stream);
            stream = nullptr;
        }
        if (context != nullptr) {
            pa_context_set_state_callback(context, nullptr, nullptr);
            pa_context_disconnect(context);
            pa_context_unref(context);
            context = nullptr;
        }
    }

    Status Fail(Status failure) {
        Drop();
        retryAfter = Clock::now() + kRetryPause;
        lastFailure = failure;
        return failure;
    }

    // Makes sure the connection and the chime stream are ready, with the lock held.
    Status Connect() {
        if (context != nullptr && pa_context_get_state(context) != PA_CONTEXT_READY) {
            Drop();  // the server went away, or an earlier attempt never finished
        }
        if (context == nullptr) {
            if (Clock::now() < retryAfter) {
                return lastFailure;
            }
            pa_proplist* props = pa_proplist_new();
            pa_proplist_sets(props, PA_PROP_APPLICATION_NAME, "Wakeline");
            context =
                pa_context_new_with_proplist(pa_threaded_mainloop_get_api(loop), "Wakeline", props);
            pa_proplist_free(props);
            if (context == nullptr) {
                return Fail(Status::Failure("connect to", kServer, "out of resources"));
            }
            pa_context_set_state_callback(
                context, [](pa_context*, void* self) { Signal(self); }, this);
            // No autospawn: a sound server is the desktop's to start, not an alarm's.
            if (pa_context_connect(context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
                return Fail(Status::Failure("connect to", kServer, ErrorText(context)));
            }
            const bool settled = Wait([this] {
                const pa_context_state_t s = pa_context_get_state(context);
                return s == PA_CONTEXT_READY || !PA_CONTEXT_IS_GOOD(s);
            });
            if (pa_context_get_state(context) != PA_CONTEXT_READY) {
                return Fail(
                    Status::Failure("connect to", kServer,
                                    settled ? ErrorText(context) : "no answer within 500 ms"));
            }
        }
        if (stream != nullptr && pa_stream_get_state(stream) != PA_STREAM_READY) {
            pa_stream_set_state_callback(stream, nullptr, nullptr);
            pa_stream_set_underflow_callback(stream, nullptr, nullptr);
            pa_stream_unref(stream);
            stream = nullptr;
        }
        if (stream == nullptr) {
            return OpenStream();
        }
        return {};
    }

    // The chime's stream, corked until the first chime.
    Status OpenStream() {
        pa_proplist* props = pa_proplist_new();
        pa_proplist_sets(props, PA_PROP_MEDIA_ROLE, "event");
        pa_proplist_sets(props, PA_PROP_MEDIA_NAME, "Wakeline power alarm");
        stream =
            pa_stream_new_with_proplist(context, "Wakeline power alarm", &spec, nullptr, props);
        pa_proplist_free(props);
        if (stream == nullptr) {
            return Fail(Status::Failure("open the chime's stream on", kServer, ErrorText(context)));
        }
        pa_stream_set_state_callback(
            stream, [](pa_stream*, void* self) { Signal(self); }, this);
        // When the chime has played out, cork again so that the sink may fall asleep.
        pa_stream_set_underflow_callback(
            stream,
            [](pa_stream* s, void*) {
                if (pa_operation* o = pa_stream_cork(s, 1, nullptr, nullptr)) {
                    pa_operation_unref(o);
                }
            },
            nullptr);
        pa_buffer_attr attr;
        attr.maxlength = static_cast<std::uint32_t>(-1);
        attr.tlength = chime.Ok() ? static_cast<std::uint32_t>(chime.Value().samples.size() * 2)
                                  : static_cast<std::uint32_t>(-1);
        attr.prebuf = static_cast<std::uint32_t>(-1);
        attr.minreq = static_cast<std::uint32_t>(-1);
        attr.fragsize = static_cast<std::uint32_t>(-1);
        if (pa_stream_connect_playback(stream, nullptr, &attr, PA_STREAM_START_CORKED, nullptr,
                                       nullptr) < 0) {
            return Fail(Status::Failure("open the chime's stream on", kServer, ErrorText(context)));
        }
        const bool settled = Wait([this] {
            const pa_stream_state_t s = pa_stream_get_state(stream);
            return s == PA_STREAM_READY || !PA_STREAM_IS_GOOD(s);
        });
        if (pa_stream_get_state(stream) != PA_STREAM_READY) {
            return Fail(Status::Failure("open the chime's stream on", kServer,
                                        settled ? ErrorText(context) : "no answer within 500 ms"));
        }
        return {};
    }

    // Reads the default sink, then the chime stream's sink input.
    Status ReadLines() {
        Answer server(loop);
        Status status = Await(pa_context_get_server_info(context, OnServer, &server), server,
                              "find the speakers on", kServer);
        if (!status.Ok()) {
            return status;
        }
        Answer sink(loop);
        status = Await(
            pa_context_get_sink_info_by_name(context, server.line.name.c_str(), OnSink, &sink),
            sink, "read the speakers", server.line.name);
        if (!status.Ok()) {
            return status;
        }
        Answer input(loop);
        status = Await(pa_context_get_sink_input_info(context, pa_stream_get_index(stream),
                                                      OnSinkInput, &input),
                       input, "read the chime's stream on", kServer);
        if (!status.Ok()) {
            return status;
        }
        lines[0] = std::move(sink.line);
        lines[1] = std::move(input.line);
        return {};
    }

    Line& Of(MixerLine line) { return lines[line == MixerLine::kSpeakers ? 0 : 1]; }

    Result<WaveSound> chime;
    pa_sample_spec spec{};
    pa_threaded_mainloop* loop = nullptr;
    pa_context* context = nullptr;
    pa_stream* stream = nullptr;
    Clock::time_point deadline;
    Clock::time_point retryAfter;
    Status lastFailure;
    Line lines[2];
};

PulseSound::PulseSound(Result<WaveSound> chime) : impl_(std::make_unique<Impl>(std::move(chime))) {}

PulseSound::~PulseSound() = default;

Status PulseSound::Open() {
    if (Status started = impl_->Start(); !started.Ok()) {
        return started;
    }
    Locked locked(impl_->loop);
    impl_->deadline = Clock::now() + kAnswerBound;
    impl_->lines[0] = {};
    impl_->lines[1] = {};
    if (Status connected = impl_->Connect(); !connected.Ok()) {
        return connected;
    }
    return impl_->ReadLines();
}

Result<std::vector<MixerControl>> PulseSound::Controls(MixerLine line) {
    const Line& l = impl_->Of(line);
    if (l.controls.empty()) {
        return Status::Failure("read the controls of",
                               line == MixerLine::kSpeakers ? "the speakers" : "the chime's stream",
                               "not found");
    }
    return l.controls;
}

Result<std::uint32_t> PulseSound::Value(MixerLine line, std::size_t control) {
    const Line& l = impl_->Of(line);
    if (control >= l.controls.size()) {
        return Status::Failure("read a control of",
                               line == MixerLine::kSpeakers ? "the speakers" : "the chime's stream",
                               "no such control");
    }
    if (l.controls[control].kind == ControlKind::kMute) {
        return std::uint32_t{l.mute ? 1u : 0u};
    }
    return std::uint32_t{pa_cvolume_max(&l.volume)};
}

Status PulseSound::Set(MixerLine line, std::size_t control, std::uint32_t value) {
    Impl& impl = *impl_;
    Line& l = impl.Of(line);
    const bool speakers = line == MixerLine::kSpeakers;
    const std::string object = speakers ? l.name : "the chime's stream";
    if (control >= l.controls.size() || impl.loop == nullptr) {
        return Status::Failure("set a control of", object, "no such control");
    }
    Locked locked(impl.loop);
    impl.deadline = Clock::now() + kAnswerBound;
    if (impl.context == nullptr || pa_context_get_state(impl.context) != PA_CONTEXT_READY) {
        return Status::Failure("set a control of", object, "the sound server went away");
    }
    Answer answer(impl.loop);
    pa_operation* operation = nullptr;
    if (l.controls[control].kind == ControlKind::kMute) {
        const int mute = value != 0 ? 1 : 0;
        operation = speakers ? pa_context_set_sink_mute_by_name(impl.context, l.name.c_str(), mute,
                                                                OnSuccess, &answer)
                             : pa_context_set_sink_input_mute(impl.context, l.index, mute,
                                                              OnSuccess, &answer);
        l.mute = mute != 0;
    } else {
        // A volume of 0 on every channel cannot be scaled back up: set it flat instead.
        if (pa_cvolume_max(&l.volume) == PA_VOLUME_MUTED) {
            pa_cvolume_set(&l.volume, l.volume.channels, value);
        } else {
            pa_cvolume_scale(&l.volume, value);
        }
        operation = speakers ? pa_context_set_sink_volume_by_name(impl.context, l.name.c_str(),
                                                                  &l.volume, OnSuccess, &answer)
                             : pa_context_set_sink_input_volume(impl.context, l.index, &l.volume,
                                                                OnSuccess, &answer);
    }
    const bool mute = l.controls[control].kind == ControlKind::kMute;
    return impl.Await(operation, answer, mute ? "set the mute switch of" : "set the volume of",
                      object);
}

Status PulseSound::PlayChime() {
    Impl& impl = *impl_;
    if (!impl.chime.Ok()) {
        return impl.chime.GetStatus();
    }
    if (Status started = impl.Start(); !started.Ok()) {
        return started;
    }
    Locked locked(impl.loop);
    impl.deadline = Clock::now() + kAnswerBound;
    if (Status connected = impl.Connect(); !connected.Ok()) {
        return connected;
    }
    // Cork first: a chime still sounding must not run dry between the flush and the new
    // samples, or its underflow would cork the new chime.
    auto send = [](pa_operation* operation) {
        if (operation != nullptr) {
            pa_operation_unref(operation);
        }
    };
    send(pa_stream_cork(impl.stream, 1, nullptr, nullptr));
    send(pa_stream_flush(impl.stream, nullptr, nullptr));
    const std::vector<std::int16_t>& samples = impl.chime.Value().samples;
    if (pa_stream_write(impl.stream, samples.data(), samples.size() * sizeof(std::int16_t), nullptr,
                        0, PA_SEEK_RELATIVE) < 0) {
        return Status::Failure("play the chime on", kServer, ErrorText(impl.context));
    }
    send(pa_stream_cork(impl.stream, 0, nullptr, nullptr));
    send(pa_stream_trigger(impl.stream, nullptr, nullptr));
    return {};
}

}  // namespace wakeline
