#include "commands.h"

#include "input_file.h"
#include "json.h"
#include "output/target_budget.h"
#include "output/target_check.h"

#include <cstdio>
#include <memory>

namespace facetor {

namespace {

/// A file and what came of reading it.
struct CheckedFile {
    std::string path;
    InputFile file;
    Message message = Message::none;
};

std::unique_ptr<CheckedFile> readChecked(Run& run, const std::string& path)
{
    auto checked = std::make_unique<CheckedFile>();
    checked->path = path;
    checked->message = readInputFile(run, checked->file, path);
    return checked;
}

/// Warnings about polygons stand with the model, those about slots with the list.
std::vector<TargetWarning> warningsOf(const InputFile& file, const InputFile* partner, float scale)
{
    if (file.kind == FileKind::model)
        return checkTarget(file.model, scale, partner ? &partner->textures : nullptr);
    if (file.kind == FileKind::textures)
        return checkTarget(file.textures, partner ? &partner->model : nullptr);
    return {};
}

Json toJson(const TargetWarning& warning)
{
    Json json = {{"code", nameOf(warning.code)}};
    if (warning.object) json["object"] = *warning.object;
    if (warning.polygon) json["polygon"] = *warning.polygon;
    if (warning.slot) json["slot"] = *warning.slot;
    json["text"] = describe(warning);
    return json;
}

Json budgetToJson(const InputFile& file, float scale)
{
    Json json = Json::object();
    TargetBudget budget;
    if (file.kind == FileKind::model) budget = budgetOf(file.model, scale);
    if (file.kind == FileKind::textures) budget = budgetOf(file.textures);
    for (const BudgetPart& part : budget.parts)
        json[std::string(part.name)] = {{"used", part.used}, {"limit", part.limit}};
    if (budget.imageBytes) json["imageBytes"] = *budget.imageBytes;
    return json;
}

} // namespace

int runCheck(Run& run, const CheckOptions& options)
{
    const float scale = options.scale.value_or(1.0f);
    const bool asArray = options.target && run.errors == ErrorFormat::json;
    int status = exitDone;
    Json array = Json::array();
    ProgressLine line(run.progress, "files", options.paths.size());
    // The file after a model is read before the model is judged.
    std::unique_ptr<CheckedFile> before, next;
    for (std::size_t i = 0; i < options.paths.size(); ++i) {
        std::unique_ptr<CheckedFile> now =
            next ? std::move(next) : readChecked(run, options.paths[i]);
        const InputFile* partner = nullptr;
        const bool sound = now->message == Message::none;
        if (options.target && sound && now->file.kind == FileKind::model &&
            i + 1 < options.paths.size()) {
            next = readChecked(run, options.paths[i + 1]);
            if (next->message == Message::none && next->file.kind == FileKind::textures)
                partner = &next->file;
        }
        if (sound && now->file.kind == FileKind::textures && before) partner = &before->file;
        line.clear();
        const std::string name = displayName(now->path);
        if (!sound) {
            status = reportFailure(run, now->path, now->message, now->file.reason);
            array.push_back({{"path", name},
                             {"ok", false},
                             {"error", failureToJson(now->path, now->message, now->file.reason)}});
        } else {
            if (!asArray) std::printf("%s: ok\n", name.c_str());
            if (options.target) {
                Json warnings = Json::array();
                for (const TargetWarning& warning : warningsOf(now->file, partner, scale)) {
                    if (options.strict) status = exitFailed;
                    if (asArray)
                        warnings.push_back(toJson(warning));
                    else
                        std::printf("%s: warning %s: %s\n", name.c_str(),
                                    std::string(nameOf(warning.code)).c_str(),
                                    describe(warning).c_str());
                }
                if (asArray)
                    array.push_back({{"path", name},
                                     {"ok", true},
                                     {"warnings", std::move(warnings)},
                                     {"budget", budgetToJson(now->file, scale)}});
            }
        }
        // The two streams in the order of the files, where both are one.
        if (finishReport(run, stdout, exitDone) != exitDone) return exitFailed;
        line.show(i + 1);
        before = sound && now->file.kind == FileKind::model ? std::move(now) : nullptr;
    }
    line.clear();
    if (asArray) std::fputs((toText(array) + '\n').c_str(), stdout);
    return finishReport(run, stdout, status);
}

} // namespace facetor
