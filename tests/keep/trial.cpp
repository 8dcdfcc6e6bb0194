// Kills a program that edits, saves and recovers at random moments, again and again, and looks at
// what is left: each file is the old or the new one, and what no file holds can be recovered, not
// older than it may be. An hour of a user takes a second here: the period of the recovery files is
// that much shorter. Two programs run at once, with documents of their own and one folder for what
// is kept; in some rounds the disk takes no large file.
//
//     facetor_keep_trial ROUNDS [SEED]
#include "base/file.h"
#include "base/folder.h"
#include "keep/keeper.h"
#include "keep/versions.h"
#include "model/model_file.h"
#include "texture/texture_file.h"

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <random>
#include <string>
#include <thread>

namespace facetor {

namespace {

constexpr std::uint64_t period = 30;                             ///< milliseconds
constexpr std::uint64_t mostAge = period * 60000 / keeperPeriod; ///< what a minute is here
constexpr std::uint32_t editors = 2;
constexpr std::size_t mostEdits = 1u << 16;
constexpr rlim_t smallDisk = 1800; ///< bytes of a file: a model fits, but not its recovery file

std::uint64_t now()
{
    using namespace std::chrono;
    return static_cast<std::uint64_t>(
        duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

/// What an editor tells of itself, in memory that outlives it.
struct Diary {
    std::atomic<std::uint32_t> edit;      ///< the number of the last one
    std::atomic<std::uint32_t> saved;     ///< the edit that the model's file holds
    std::atomic<std::uint32_t> saving;    ///< or may hold, while it is written
    std::atomic<std::uint32_t> savedList; ///< the same of the texture list
    std::atomic<std::uint32_t> savingList;
    std::atomic<std::uint32_t> givenUp;    ///< what came before it is not missed
    std::atomic<std::uint64_t> slowest;    ///< writing of a recovery file, in milliseconds
    std::atomic<std::uint64_t> longestGap; ///< from one tick to the next: a busy machine, a save
    std::atomic<std::uint64_t> lastTick;
    std::atomic<std::uint64_t> writingSince;                  ///< 0 while nothing is written
    std::atomic<bool> faulty;                                 ///< it could not be written
    std::array<std::atomic<std::uint64_t>, mostEdits> madeAt; ///< by edit
};

struct Place {
    std::string folder;
    std::uint32_t editor;

    std::string model() const { return pathIn(folder, "model" + std::to_string(editor) + ".mx3"); }
    std::string list() const { return pathIn(folder, "list" + std::to_string(editor) + ".mxt"); }
    std::string recovery() const { return pathIn(folder, "Recovery"); }
    VersionStore versions() const { return {pathIn(folder, "Versions"), 10, 1u << 20}; }
};

// An edit leaves its number in the name of object 0, and now and then in texture 0.

std::uint32_t editOf(const Model& model)
{
    return static_cast<std::uint32_t>(std::strtoul(model.names[0].c_str() + 1, nullptr, 10));
}

std::uint32_t editOf(const TextureList& list)
{
    if (list.isEmpty(0)) return 0;
    const TextureSlot& texture = list.slot(0);
    return static_cast<std::uint32_t>(texture.pixels[0] | texture.pixels[1] << 16);
}

std::uint32_t editOf(const Recoverable& recoverable)
{
    RecoveryState state;
    Model model;
    TextureList list;
    std::string reason;
    if (createModelStore(model) != Message::none || list.create() != Message::none ||
        readRecoverable(recoverable, state, model, list, reason) != Message::none)
        return 0;
    return editOf(model);
}

class Editor {
public:
    Editor(const Place& place, Diary& diary, unsigned seed)
        : place_(place), diary_(diary), random_(seed)
    {
    }

    [[noreturn]] void run()
    {
        if (startDocument(document_) != Message::none) std::_Exit(9);
        document_.modelFile = place_.model();
        document_.textureFile = place_.list();
        startKeeper(keeper_, place_.recovery());
        keeper_.period = period;
        recoverOwn();
        for (;;) step();
    }

private:
    std::uint32_t draw(std::uint32_t below) { return random_() % below; }

    /// The document that this editor had before; what is another's it leaves.
    void recoverOwn()
    {
        std::erase_if(keeper_.recoverable, [&](const Recoverable& other) {
            return other.damaged || other.state.modelFile != place_.model();
        });
        (void)readModelFile(document_.model, place_.model());
        (void)readTextureFile(document_.textures, place_.list());
        std::uint32_t newest = editOf(document_.model);
        std::optional<std::size_t> chosen;
        for (std::size_t i = 0; i < keeper_.recoverable.size(); ++i)
            if (const std::uint32_t edit = editOf(keeper_.recoverable[i]); edit > newest) {
                newest = edit;
                chosen = i;
            }
        std::string reason;
        if (chosen && (recover(keeper_, *chosen, document_, view_, reason) != Message::none ||
                       editOf(document_.model) != newest))
            std::_Exit(8);
        // Only what has been written anew is let go, and then what is older.
        if (!keeper_.fault.empty()) return keeper_.recoverable.clear();
        for (Recoverable& other : keeper_.recoverable) other.set.remove();
        keeper_.recoverable.clear();
        diary_.lastTick = now();
    }

    void edit()
    {
        const std::uint32_t number = diary_.edit + 1;
        if (number >= mostEdits) std::_Exit(7);
        (void)change(document_, Word::stepRename, [&] {
            document_.model.names[0] = "s" + std::to_string(number);
            if (draw(4) == 0) {
                Texels texels;
                if (texels.allocate(64 * 64)) {
                    texels[0] = static_cast<Rgb555>(number);
                    texels[1] = static_cast<Rgb555>(number >> 16);
                    document_.textures.set(0, 64, 64, std::move(texels));
                }
            }
            return EditOutcome{};
        });
        diary_.madeAt[number] = now();
        diary_.edit = number;
    }

    void tick()
    {
        const std::uint64_t time = now();
        diary_.longestGap = std::max<std::uint64_t>(diary_.longestGap, time - diary_.lastTick);
        diary_.lastTick = time;
        const bool wasBusy = keeper_.writer.isBusy();
        tickKeeper(keeper_, document_, view_, time);
        if (!wasBusy && keeper_.writer.isBusy()) diary_.writingSince = time;
        if (wasBusy && !keeper_.writer.isBusy()) {
            diary_.slowest = std::max<std::uint64_t>(diary_.slowest, now() - diary_.writingSince);
            diary_.writingSince = 0;
        }
        if (!keeper_.fault.empty()) diary_.faulty = true;
    }

    void save()
    {
        std::string reason;
        (void)keepVersion(place_.versions(), place_.model(), KeptKind::model, reason);
        diary_.saving = editOf(document_.model);
        if (writeModelFile(document_.model, place_.model()) == Message::none) {
            diary_.saved = diary_.saving.load();
            markModelSaved(document_);
        }
        if (document_.textures.usedCount() == 0) return;
        (void)keepVersion(place_.versions(), place_.list(), KeptKind::textures, reason);
        diary_.savingList = editOf(document_.textures);
        if (writeTextureFile(document_.textures, place_.list()) == Message::none) {
            diary_.savedList = diary_.savingList.load();
            markTexturesSaved(document_);
        }
    }

    void step()
    {
        switch (draw(60)) {
        case 0: save(); break;
        case 1: keepForLater(keeper_, document_, view_); break; // as a reading that breaks off
        case 2: keepNow(keeper_, document_, view_, now()); break;
        default:
            if (draw(3) == 0) edit();
            break;
        }
        tick();
        std::this_thread::sleep_for(std::chrono::microseconds(draw(1000)));
    }

    Place place_;
    Diary& diary_;
    std::mt19937 random_;
    Document document_;
    View view_;
    Keeper keeper_;
};

struct Findings {
    int failures = 0;
    std::uint64_t oldest = 0; ///< milliseconds that were lost at most
    int recovered = 0;

    void expect(bool holds, std::uint32_t editor, const char* what)
    {
        if (holds) return;
        ++failures;
        std::printf("editor %s: %s\n", std::to_string(editor).c_str(), what);
    }
};

/// What an editor left, at the moment of its end.
void check(Findings& findings, const Place& place, Diary& diary, std::uint64_t end)
{
    const auto expect = [&](bool holds, const char* what) {
        findings.expect(holds, place.editor, what);
    };
    Model model;
    TextureList list;
    if (createModelStore(model) != Message::none || list.create() != Message::none) return;
    std::uint32_t held = 0;
    if (readFileStart(place.model(), 0)) {
        expect(readModelFile(model, place.model()) == Message::none, "the model's file is broken");
        held = editOf(model);
        expect(held == diary.saved || held == diary.saving, "the model's file is another one");
        diary.saved = held;
    } else {
        expect(diary.saved == 0, "the model's file is gone");
    }
    if (readFileStart(place.list(), 0)) {
        expect(readTextureFile(list, place.list()) == Message::none, "the list's file is broken");
        expect(editOf(list) == diary.savedList || editOf(list) == diary.savingList,
               "the list's file is another one");
        diary.savedList = editOf(list);
    } else {
        expect(diary.savedList == 0, "the list's file is gone");
    }
    for (const Recoverable& found : findRecoverable(place.recovery())) {
        expect(!found.damaged && !found.texturesDamaged, "a recovery file is broken");
        if (found.damaged || found.state.modelFile != place.model()) continue;
        RecoveryState state;
        std::string reason;
        TextureList kept;
        if (kept.create() != Message::none) return;
        expect(readRecoverable(found, state, model, kept, reason) == Message::none &&
                   reason.empty(),
               "a document cannot be recovered");
        expect(editOf(kept) <= editOf(model), "a list is newer than its model");
        held = std::max(held, editOf(model));
        ++findings.recovered;
    }
    const std::uint32_t last = diary.edit;
    const std::uint32_t lost = std::max(held, diary.givenUp.load()) + 1;
    if (lost <= last && !diary.faulty) {
        const std::uint64_t age = end - std::min(end, diary.madeAt[lost].load());
        findings.oldest = std::max(findings.oldest, age);
        const std::uint64_t gap =
            std::max<std::uint64_t>(diary.longestGap, end - std::min(end, diary.lastTick.load()));
        const std::uint64_t since = diary.writingSince;
        const std::uint64_t writing =
            std::max<std::uint64_t>(diary.slowest, since == 0 ? 0 : end - std::min(end, since));
        expect(age <= mostAge + 2 * (writing + gap), "what is recovered is too old");
    }
    diary.givenUp = last;
    const Versions versions = readVersions(place.versions());
    expect(!versions.damaged, "the index of the versions is broken");
    for (const Version& version : versions.all) {
        std::string reason;
        const auto bytes = readVersion(place.versions(), version, reason);
        // The other editor runs, and may have let it go meanwhile.
        if (!bytes && std::ranges::count(readVersions(place.versions()).all, version) == 0)
            continue;
        expect(bytes &&
                   (version.kind == KeptKind::model ? readModel(model, *bytes)
                                                    : readTextures(list, *bytes)) == Message::none,
               "a version is broken");
    }
}

int runTrial(std::uint32_t rounds, unsigned seed)
{
    const std::string folder =
        (std::filesystem::temp_directory_path() / ("facetor-trial-" + std::to_string(getpid())))
            .string();
    std::filesystem::create_directories(folder);
    void* memory = mmap(nullptr, sizeof(Diary) * editors, PROT_READ | PROT_WRITE,
                        MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return 2;
    auto* diaries = static_cast<Diary*>(memory); // all zero, which is how a diary begins
    std::mt19937 random(seed);
    Findings findings;
    for (std::uint32_t round = 0; round < rounds && findings.failures == 0; ++round) {
        std::array<pid_t, editors> processes{};
        for (std::uint32_t i = 0; i < editors; ++i) {
            const unsigned editorSeed = random();
            const bool small = random() % 8 == 0;
            diaries[i].slowest = 0;
            diaries[i].longestGap = diaries[i].writingSince = 0;
            diaries[i].faulty = small;
            processes[i] = fork();
            if (processes[i] != 0) continue;
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{smallDisk, smallDisk};
            if (small) setrlimit(RLIMIT_FSIZE, &limit);
            Editor({folder, i}, diaries[i], editorSeed).run();
        }
        for (std::uint32_t i = 0; i < editors; ++i) {
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 120000));
            const std::uint64_t end = now();
            kill(processes[i], SIGKILL);
            int status = 0;
            waitpid(processes[i], &status, 0);
            findings.expect(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL, i,
                            "it ended by itself");
            check(findings, {folder, i}, diaries[i], end);
        }
    }
    std::printf("seed %u: %u rounds of %u editors, %d documents recovered, "
                "at most %llu ms lost where a minute is %llu ms, %d failures\n",
                seed, rounds, editors, findings.recovered,
                static_cast<unsigned long long>(findings.oldest),
                static_cast<unsigned long long>(mostAge), findings.failures);
    if (findings.failures == 0)
        std::filesystem::remove_all(folder);
    else
        std::printf("what is left: %s\n", folder.c_str());
    return findings.failures == 0 ? 0 : 1;
}

} // namespace

} // namespace facetor

int main(int count, char** arguments)
{
    const auto number = [&](int index, unsigned long otherwise) {
        return count > index ? std::strtoul(arguments[index], nullptr, 10) : otherwise;
    };
    return facetor::runTrial(static_cast<std::uint32_t>(number(1, 50)),
                             static_cast<unsigned>(number(2, std::random_device{}())));
}
