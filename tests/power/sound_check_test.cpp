// The sound check's statuses and its restore over a mixer held in memory.

#include "power/sound_check.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace wakeline {
namespace {

constexpr std::uint32_t kFull = 65536;

struct FakeControl {
    ControlKind kind;
    std::uint32_t maximum;
    std::uint32_t value;
    bool unreadable = false;
    bool refusesSet = false;
};

struct FakeLine {
    std::vector<FakeControl> controls;
    bool listUnreadable = false;
};

using Write = std::tuple<MixerLine, std::size_t, std::uint32_t>;

class FakeMixer : public SoundMixer {
  public:
    FakeMixer(FakeLine speakers, FakeLine wave) : lines_{std::move(speakers), std::move(wave)} {}

    Status Open() override {
        return noServer ? Status::Failure("connect to", "server", "gone") : Status();
    }
    Result<std::vector<MixerControl>> Controls(MixerLine line) override {
        if (Of(line).listUnreadable) {
            return Status::Failure("list", "line", "refused");
        }
        std::vector<MixerControl> list;
        for (const FakeControl& c : Of(line).controls) {
            list.push_back({c.kind, c.maximum});
        }
        return list;
    }
    Result<std::uint32_t> Value(MixerLine line, std::size_t control) override {
        const FakeControl& c = Of(line).controls.at(control);
        if (c.unreadable) {
            return Status::Failure("read", "control", "refused");
        }
        return c.value;
    }
    Status Set(MixerLine line, std::size_t control, std::uint32_t value) override {
        FakeControl& c = Of(line).controls.at(control);
        if (c.refusesSet) {
            return Status::Failure("set", "control", "refused");
        }
        c.value = value;
        writes.emplace_back(line, control, value);
        return {};
    }

    FakeLine& Of(MixerLine line) { return lines_[line == MixerLine::kSpeakers ? 0 : 1]; }

    bool noServer = false;
    std::vector<Write> writes;

  private:
    FakeLine lines_[2];
};

FakeLine Line(std::uint32_t volume, std::uint32_t mute) {
    return {{{ControlKind::kVolume, kFull, volume}, {ControlKind::kMute, 1, mute}}};
}

TEST(SoundCheck, StatusesOfBothLines) {
    struct Row {
        const char* legend;
        FakeLine speakers;
        FakeLine wave;
        bool loud;
        bool noServer;
        int expected;
        std::size_t writes;
        bool problem;  // a failure to log
    };
    FakeLine unreadableList = Line(kFull, 0);
    unreadableList.listUnreadable = true;
    FakeLine unreadableVolume = Line(100, 1);
    unreadableVolume.controls[0].unreadable = true;
    FakeLine refusing = Line(100, 0);
    refusing.controls[0].refusesSet = true;
    const Row rows[] = {
        {"full and unmuted: left alone", Line(kFull, 0), Line(kFull, 0), true, false, 0, 0, false},
        {"speakers low and muted: two changes", Line(19661, 1), Line(kFull, 0), true, false, 2, 2,
         false},
        {"everything quiet: 1 + 1 per line", Line(0, 1), Line(5, 1), true, false, 4, 4, false},
        {"loud off: nothing changes", Line(0, 1), Line(5, 1), false, false, 0, 0, false},
        {"a boost above full stays", Line(kFull + 30000, 0), Line(kFull, 0), true, false, 0, 0,
         false},
        {"wave list unreadable: 3 + 3", Line(kFull, 0), unreadableList, true, false, 6, 0, true},
        {"speakers without controls: 4", FakeLine{}, Line(kFull, 0), true, false, 4, 0, false},
        {"volume unreadable 3, mute cleared 1", unreadableVolume, Line(kFull, 0), true, false, 4, 1,
         true},
        {"a volume that cannot be set: 3", refusing, Line(kFull, 0), true, false, 3, 0, true},
        {"no server: -1", Line(0, 1), Line(0, 1), true, true, -1, 0, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.legend);
        FakeMixer mixer(row.speakers, row.wave);
        mixer.noServer = row.noServer;
        SoundCheck check(mixer);
        EXPECT_EQ(check.CheckSoundLevels(row.loud, false), row.expected);
        EXPECT_EQ(mixer.writes.size(), row.writes);
        EXPECT_EQ(check.SoundChanged(), row.writes > 0);
        EXPECT_EQ(check.Problem().Ok(), !row.problem);
    }
}

TEST(SoundCheck, RestoresWhatItChangedInTheOrderItChangedIt) {
    FakeMixer mixer(Line(19661, 1), Line(100, 0));
    SoundCheck check(mixer);
    ASSERT_EQ(check.CheckSoundLevels(true, false), 3);  // speakers volume and mute, wave volume
    EXPECT_EQ(mixer.writes, (std::vector<Write>{{MixerLine::kSpeakers, 0, kFull},
                                                {MixerLine::kSpeakers, 1, 0},
                                                {MixerLine::kWave, 0, kFull}}));
    mixer.writes.clear();

    // The checks of the ticks that follow, until the sailor answers, find the levels raised
    // by this run: still changed, nothing written or saved again.
    EXPECT_EQ(check.CheckSoundLevels(true, false), 3);
    EXPECT_TRUE(mixer.writes.empty());

    EXPECT_EQ(check.CheckSoundLevels(true, true), 3);
    EXPECT_EQ(mixer.writes, (std::vector<Write>{{MixerLine::kSpeakers, 0, 19661},
                                                {MixerLine::kSpeakers, 1, 1},
                                                {MixerLine::kWave, 0, 100}}));
    EXPECT_TRUE(check.SoundChanged());

    // Everything is back: a second restore writes nothing, and the server going away since
    // is -1 as for any check.
    mixer.writes.clear();
    EXPECT_EQ(check.CheckSoundLevels(true, true), 0);
    EXPECT_TRUE(mixer.writes.empty());
    mixer.noServer = true;
    EXPECT_EQ(check.CheckSoundLevels(true, true), -1);
    EXPECT_FALSE(check.Problem().Ok());
}

}  // namespace
}  // namespace wakeline
