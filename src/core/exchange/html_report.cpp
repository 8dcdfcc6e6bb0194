#include "exchange/html_report.h"

#include "exchange/html_text.h"
#include "exchange/look.h"
#include "image/stb_image.h"
#include "model/polygon_attribute.h"
#include "output/target_budget.h"
#include "output/target_check.h"
#include "view/draw_order.h"
#include "view/visible_polygon.h"

#include <algorithm>
#include <array>
#include <map>
#include <new>
#include <utility>
#include <vector>

namespace facetor {

namespace {

constexpr ClientSize pictureSize{320, 240};
/// Frames of which a part becomes a picture.
constexpr ClientSize closeSize{640, 480};
constexpr std::uint32_t turnPictures = 8;
/// Warnings with a picture, at most; the page says how many more there are.
constexpr std::size_t shownWarnings = 40;

constexpr std::string_view style = R"(
:root{color-scheme:light dark;--line:#8884;--bar:#3a7bd5;--full:#c62828}
body{font:16px/1.45 system-ui,sans-serif;margin:0 auto;padding:1rem;max-width:1360px}
h1{margin:.2em 0}h2{margin:1.6em 0 .5em;border-bottom:1px solid var(--line)}
figcaption{font-size:.85em;overflow-wrap:anywhere}
img{image-rendering:pixelated;max-width:100%;height:auto;display:block}
figure{display:inline-block;vertical-align:top;width:240px;max-width:100%;margin:0 1rem 1rem 0}
.sheet figure{width:128px}
.sheet img{background:repeating-conic-gradient(#999 0 25%,#bbb 0 50%) 0/16px 16px;max-height:128px;object-fit:contain}
.wide{overflow-x:auto}table{border-collapse:collapse}
th,td{padding:.2em .7em .2em 0;text-align:left;border-bottom:1px solid var(--line);vertical-align:top}
td.n{text-align:right;white-space:nowrap;font-variant-numeric:tabular-nums}
.bar{width:12em;max-width:30vw;height:.9em;border:1px solid var(--line)}
.bar i{display:block;height:100%;background:var(--bar)}.bar .over{background:var(--full)}
ul{padding-left:1.4em}code{font-family:ui-monospace,monospace}
@media(max-width:560px){figure{width:46%;margin:0 3% 1rem 0}.sheet figure{width:29%}
th,td{padding-right:.4em}.bar{width:3.2em}}
@media print{body{max-width:none;font-size:11pt}figure,tr{break-inside:avoid}.bar i{print-color-adjust:exact}}
)";

/// The part of a frame of closeSize that shows a polygon with as much again on each side, in the
/// proportions of the pictures.
InclusiveRectangle areaAround(const ScreenQuad& quad)
{
    const auto [left, right] = std::minmax({quad[0].x, quad[1].x, quad[2].x, quad[3].x});
    const auto [top, bottom] = std::minmax({quad[0].y, quad[1].y, quad[2].y, quad[3].y});
    constexpr std::int32_t least = 80;
    const std::int64_t wanted =
        std::max(std::int64_t{right} - left,
                 (std::int64_t{bottom} - top) * pictureSize.width / pictureSize.height) *
        3;
    const auto width =
        static_cast<std::int32_t>(std::clamp<std::int64_t>(wanted, least, closeSize.width));
    const std::int32_t height = width * pictureSize.height / pictureSize.width;
    const auto start = [](std::int64_t from, std::int64_t to, std::int32_t size,
                          std::int32_t whole) {
        return static_cast<std::int32_t>(
            std::clamp<std::int64_t>((from + to - size) / 2, 0, whole - size));
    };
    const std::int32_t x = start(left, right, width, closeSize.width);
    const std::int32_t y = start(top, bottom, height, closeSize.height);
    return {x, y, x + width - 1, y + height - 1};
}

class ReportWriter {
public:
    explicit ReportWriter(const ReportSubject& subject) : subject_(subject) {}
    ~ReportWriter() { stopEngine(engine_); }
    ReportWriter(const ReportWriter&) = delete;
    ReportWriter& operator=(const ReportWriter&) = delete;

    Message write(std::string& page)
    {
        if (const Message message = startEngine(engine_); message != Message::none) return message;
        if (const Message message = createModelStore(marked_); message != Message::none)
            return message;
        copyModel(marked_, subject_.model);
        for (std::uint32_t i = 0; i < marked_.totalPolygonCount; ++i)
            marked_.attributes[i].flags &= ~std::uint32_t{picked};
        if (subject_.textures) engine_.settings.textures = subject_.textures->slots();
        const std::string title = escaped(subject_.modelName);
        out_ = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
               "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" +
               title + "</title>\n<style>" + std::string(style) +
               "</style>\n</head>\n<body>\n<h1>" + title + "</h1>\n";
        if (subject_.textures)
            out_ += "<p>Texture list: " + escaped(subject_.texturesName) + "</p>\n";
        writeViews();
        writeBudget();
        writeWarnings();
        if (subject_.textures) writeTextures();
        writeHierarchy();
        writeAttributes();
        out_ += "</body>\n</html>\n";
        page = std::move(out_);
        return Message::none;
    }

private:
    std::string frame(std::optional<FixedView> direction, Angle turn, const std::string& alt)
    {
        View view;
        startView(view, engine_);
        fitModel(view, engine_, marked_, pictureSize);
        view.modelRotation = {0, turn, 0};
        buildViewMatrix(view, engine_, ViewDirectionUse::ignore);
        if (direction) applyFixedView(view, engine_, *direction);
        paintFrame(view, engine_, marked_, pictureSize);
        return part({0, 0, engine_.surface.width - 1, engine_.surface.height - 1}, alt);
    }

    /// A part of the surface, shown in the size of all pictures.
    std::string part(const InclusiveRectangle& area, const std::string& alt) const
    {
        const auto width = static_cast<std::uint32_t>(area.right - area.left + 1);
        const auto height = static_cast<std::uint32_t>(area.bottom - area.top + 1);
        std::vector<std::uint8_t> rgb;
        rgb.reserve(std::size_t{width} * height * 3);
        for (std::int32_t y = area.top; y <= area.bottom; ++y)
            for (std::int32_t x = area.left; x <= area.right; ++x) {
                const auto colour = toScreenColour(engine_.surface.at(x, y));
                rgb.insert(rgb.end(), colour.begin(), colour.end());
            }
        return htmlImage(stbEncodePng(width, height, 3, rgb), pictureSize.width, pictureSize.height,
                         alt);
    }

    void writeViews()
    {
        constexpr std::array<std::pair<FixedView, const char*>, 6> views{
            {{FixedView::forward, "Forward"},
             {FixedView::back, "Back"},
             {FixedView::left, "Left"},
             {FixedView::right, "Right"},
             {FixedView::top, "Top"},
             {FixedView::bottom, "Bottom"}}};
        out_ += "<h2>Views</h2>\n<div class=\"views\">\n";
        for (const auto& [direction, name] : views)
            out_ += htmlFigure(frame(direction, 0, name), name);
        out_ += "</div>\n<h2>A turn</h2>\n<div class=\"views\">\n";
        for (std::uint32_t i = 0; i < turnPictures; ++i) {
            const std::string degrees = std::to_string(i * 360 / turnPictures) + " degrees";
            out_ += htmlFigure(frame({}, static_cast<Angle>(i * fullTurn / turnPictures), degrees),
                               degrees);
        }
        out_ += "</div>\n";
    }

    void writeBudgetPart(const BudgetPart& part)
    {
        const std::uint64_t percent = part.used * 100 / part.limit;
        out_ += "<tr><th scope=\"row\">" + escaped(catalogueText(part.title)) +
                "</th><td><div class=\"bar\"><i" +
                std::string(part.used > part.limit ? " class=\"over\"" : "") +
                " style=\"width:" + std::to_string(std::min<std::uint64_t>(percent, 100)) +
                "%\"></i></div></td>" + "<td class=\"n\">" + std::to_string(part.used) +
                "</td><td class=\"n\">of " + std::to_string(part.limit) + "</td><td class=\"n\">" +
                std::to_string(percent) + " %</td></tr>\n";
    }

    void writeBudget()
    {
        out_ += "<h2>Budget</h2>\n<div class=\"wide\"><table>\n";
        TargetBudget budgets[2]{budgetOf(subject_.model, subject_.scale), {}};
        if (subject_.textures) budgets[1] = budgetOf(*subject_.textures);
        for (const TargetBudget& budget : budgets)
            for (const BudgetPart& part : budget.parts) writeBudgetPart(part);
        out_ += "</table></div>\n<p>";
        const char* const names[] = {"Model image", "Texture image"};
        for (std::size_t i = 0; i < (subject_.textures ? 2u : 1u); ++i)
            out_ += std::string(names[i]) + ": " +
                    (budgets[i].imageBytes ? std::to_string(*budgets[i].imageBytes) + " bytes. "
                                           : "cannot be written. ");
        out_ += "</p>\n";
    }

    /// A polygon, marked, with what is around it, from the side that shows most of it.
    std::string pictureOf(const TargetWarning& warning)
    {
        const Mesh& mesh = marked_.meshes[marked_.objects[*warning.object].mesh];
        const std::uint32_t attribute = mesh.attributeTable + *warning.polygon;
        std::uint32_t& objectFlags = marked_.objects[*warning.object].flags;
        const std::uint32_t before = std::exchange(objectFlags, objectFlags | objectShown);
        View view;
        startView(view, engine_);
        fitModel(view, engine_, marked_, closeSize);
        applyFixedView(view, engine_, findBestView(view, engine_, marked_, attribute, closeSize));
        std::uint32_t& flags = marked_.attributes[attribute].flags;
        flags |= picked;
        InclusiveRectangle area{0, 0, closeSize.width - 1, closeSize.height - 1};
        for (const OrderedPolygon& polygon : listDrawOrder(view, engine_, marked_, closeSize))
            if (polygon.attribute == attribute && polygon.object == *warning.object)
                area = areaAround(polygon.point);
        paintFrame(view, engine_, marked_, closeSize);
        flags &= ~std::uint32_t{picked};
        objectFlags = before;
        return part(area, describe(warning));
    }

    void writeWarnings()
    {
        std::vector<TargetWarning> warnings =
            checkTarget(subject_.model, subject_.scale, subject_.textures);
        if (subject_.textures)
            for (TargetWarning& warning : checkTarget(*subject_.textures, &subject_.model))
                warnings.push_back(std::move(warning));
        out_ += "<h2>Warnings</h2>\n";
        if (warnings.empty()) {
            out_ += "<p>None.</p>\n";
            return;
        }
        std::map<std::string_view, std::size_t> counts;
        for (const TargetWarning& warning : warnings) ++counts[nameOf(warning.code)];
        out_ += "<table>\n";
        for (const auto& [name, count] : counts)
            out_ += "<tr><th scope=\"row\"><code>" + std::string(name) +
                    "</code></th><td class=\"n\">" + std::to_string(count) + "</td></tr>\n";
        out_ += "</table>\n<ul>\n";
        const auto caption = [](const TargetWarning& warning) {
            return "<code>" + std::string(nameOf(warning.code)) + "</code> " +
                   escaped(describe(warning));
        };
        for (const TargetWarning& warning : warnings)
            if (!warning.polygon) out_ += "<li>" + caption(warning) + "</li>\n";
        out_ += "</ul>\n<div class=\"faults\">\n";
        std::size_t shown = 0, left = 0;
        for (const TargetWarning& warning : warnings) {
            if (!warning.polygon) continue;
            if (shown < shownWarnings) {
                out_ += htmlFigure(pictureOf(warning), caption(warning));
                ++shown;
            } else {
                ++left;
            }
        }
        out_ += "</div>\n";
        if (left > 0)
            out_ +=
                "<p>And " + std::to_string(left) +
                " more about polygons; <code>facetor-cli check --target</code> lists all.</p>\n";
    }

    void writeTextures()
    {
        const TextureList& list = *subject_.textures;
        std::map<std::uint32_t, std::uint32_t> uses;
        for (std::uint32_t i = 0; i < subject_.model.totalPolygonCount; ++i)
            if ((subject_.model.attributes[i].flags & textureMap) != 0)
                ++uses[subject_.model.attributes[i].texture];
        out_ += "<h2>Textures</h2>\n<div class=\"sheet\">\n";
        for (std::uint32_t i = 0; i < list.usedCount(); ++i) {
            if (list.isEmpty(i)) continue;
            const TextureSlot& slot = list.slot(i);
            const std::int32_t times = std::max(1, 64 / std::max<int>(slot.width, slot.height));
            const std::string name = "slot " + std::to_string(i);
            out_ += htmlFigure(
                htmlImage(encodeTexture(list, i), slot.width * times, slot.height * times, name),
                name + "<br>" + std::to_string(slot.width) + " x " + std::to_string(slot.height) +
                    "<br>" + std::to_string(uses[i]) + " polygons");
        }
        out_ += "</div>\n";
    }

    void writeHierarchy()
    {
        const Model& model = subject_.model;
        out_ += "<h2>Hierarchy</h2>\n";
        out_ += "<ul>\n";
        const auto write = [&](const auto& self, std::uint32_t first) -> void {
            for (std::uint32_t k = first; k != noObject; k = model.objects[k].next) {
                const Mesh& mesh = model.meshes[model.objects[k].mesh];
                out_ += "<li>" + escaped(model.names[k]) + " <small>(object " + std::to_string(k) +
                        ": " + std::to_string(mesh.polygonCount) + " polygons, " +
                        std::to_string(mesh.vertexCount) + " vertices)</small>";
                if (model.objects[k].child != noObject) {
                    out_ += "\n<ul>\n";
                    self(self, model.objects[k].child);
                    out_ += "</ul>\n";
                }
                out_ += "</li>\n";
            }
        };
        if (model.objectCount > 0) write(write, 0);
        out_ += "</ul>\n";
    }

    void writeAttributes()
    {
        const Model& model = subject_.model;
        const auto has = [](std::uint32_t bits) {
            return [bits](const PolygonAttribute& a) { return (a.flags & bits) == bits; };
        };
        const auto sorts = [](std::uint16_t rule) {
            return [rule](const PolygonAttribute& a) { return a.sort == rule; };
        };
        using Test = bool (*)(const PolygonAttribute&);
        out_ += "<h2>Attributes</h2>\n<div class=\"wide\"><table>\n";
        const auto row = [&](const char* title, const auto& test) {
            std::uint32_t count = 0;
            for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i)
                if (test(model.attributes[i])) ++count;
            out_ += "<tr><th scope=\"row\">" + std::string(title) + "</th><td class=\"n\">" +
                    std::to_string(count) + "</td></tr>\n";
        };
        row("Dual plane",
            Test([](const PolygonAttribute& a) { return (a.plane & dualPlaneBit) != 0; }));
        row("Z sort: nearest point", sorts(sortNearest));
        row("Z sort: farthest point", sorts(sortFarthest));
        row("Z sort: centre", Test([](const PolygonAttribute& a) {
                return a.sort != sortNearest && a.sort != sortFarthest;
            }));
        row("Texture", has(textureMap));
        row("Polyline", has(polyLine));
        row("Mesh", has(meshMode));
        row("Shadow", has(shadowMode));
        row("Half luminance", has(halfMode));
        row("Translucent", has(translucentMode));
        row("Gouraud by the light", Test(isLightGouraud));
        row("Gouraud by a table", Test(isTableGouraud));
        row("Light", has(useLight));
        row("Near clip", has(nearClip));
        out_ += "</table></div>\n";
    }

    const ReportSubject& subject_;
    Engine engine_;
    Model marked_;
    std::string out_;
};

} // namespace

Message formatReport(Bytes& page, const ReportSubject& subject)
try {
    std::string text;
    ReportWriter writer(subject);
    if (const Message message = writer.write(text); message != Message::none) return message;
    page = bytesOf(text);
    return Message::none;
} catch (const std::bad_alloc&) {
    return Message::outOfMemory;
}

} // namespace facetor
