#include "tools/win/visual_cues.h"

#include <algorithm>
#include <array>
#include <memory>

#include "entry/trace.h"
#include "resources/resource.h"
#include "tools/win/png.h"

namespace vantrel {

namespace {

constexpr std::size_t Sides = 4;

// Both pictures are drawn for the left side in the resource and kept turned for each side.
struct CuePictures {
    std::array<std::unique_ptr<Gdiplus::Bitmap>, Sides> arrows;
    std::array<std::unique_ptr<Gdiplus::Bitmap>, Sides> edges;
};

ULONG_PTR g_gdiplus = 0;
std::unique_ptr<CuePictures> g_pictures;

constexpr Gdiplus::RotateFlipType Turns[Sides] = {Gdiplus::RotateNoneFlipNone, Gdiplus::Rotate90FlipNone,
                                                  Gdiplus::Rotate180FlipNone, Gdiplus::Rotate270FlipNone};

void LoadTurned(UINT id, std::array<std::unique_ptr<Gdiplus::Bitmap>, Sides>& pictures)
{
    for (std::size_t side = 0; side < Sides; ++side) {
        pictures[side] = LoadPng(id);
        if (pictures[side] != nullptr) pictures[side]->RotateFlip(Turns[side]);
    }
}

const CuePictures* Pictures()
{
    if (g_pictures != nullptr) return g_pictures.get();
    const Gdiplus::GdiplusStartupInput input;
    if (g_gdiplus == 0 && Gdiplus::GdiplusStartup(&g_gdiplus, &input, nullptr) != Gdiplus::Ok) return nullptr;
    g_pictures = std::make_unique<CuePictures>();
    LoadTurned(IDP_CUE_ARROW, g_pictures->arrows);
    LoadTurned(IDP_CUE_EDGE, g_pictures->edges);
    return g_pictures.get();
}

// `width` x `height` pixels at the middle of one side of the area.
Gdiplus::Rect PlaceAtSide(const RECT& area, std::size_t side, int width, int height) noexcept
{
    const int centerX = (area.left + area.right - width) / 2;
    const int centerY = (area.top + area.bottom - height) / 2;
    switch (side) {
    case 0: return {area.left, centerY, width, height};
    case 1: return {centerX, area.top, width, height};
    case 2: return {area.right - width, centerY, width, height};
    default: return {centerX, area.bottom - height, width, height};
    }
}

void DrawVisualCue(Gdiplus::Graphics& graphics, Gdiplus::Bitmap* picture, const Gdiplus::Rect& place,
                   std::int32_t opacity)
{
    if (picture == nullptr) return;
    const auto alpha = static_cast<float>(std::clamp(opacity, 0, 100)) / 100.0F;
    const Gdiplus::ColorMatrix fade = {
        {{1, 0, 0, 0, 0}, {0, 1, 0, 0, 0}, {0, 0, 1, 0, 0}, {0, 0, 0, alpha, 0}, {0, 0, 0, 0, 1}}};
    Gdiplus::ImageAttributes attributes;
    attributes.SetColorMatrix(&fade);
    // Stretched edges would fade into what lies outside of the picture.
    attributes.SetWrapMode(Gdiplus::WrapModeTileFlipXY);
    graphics.DrawImage(picture, place, 0, 0, static_cast<INT>(picture->GetWidth()),
                       static_cast<INT>(picture->GetHeight()), Gdiplus::UnitPixel, &attributes);
}

void DrawSide(Gdiplus::Graphics& graphics, const CuePictures& pictures, const RECT& area, std::size_t side,
              std::int32_t arrowOpacity, std::int32_t edgeOpacity)
{
    Gdiplus::Bitmap* const edge = pictures.edges[side].get();
    Gdiplus::Bitmap* const arrow = pictures.arrows[side].get();
    if (edge == nullptr || arrow == nullptr) return;
    const bool upright = side % 2 == 0;
    const int edgeWidth =
        upright ? static_cast<int>(edge->GetWidth()) : static_cast<int>(area.right - area.left);
    const int edgeHeight =
        upright ? static_cast<int>(area.bottom - area.top) : static_cast<int>(edge->GetHeight());
    DrawVisualCue(graphics, edge, PlaceAtSide(area, side, edgeWidth, edgeHeight), edgeOpacity);
    const int arrowWidth = static_cast<int>(arrow->GetWidth());
    const int arrowHeight = static_cast<int>(arrow->GetHeight());
    DrawVisualCue(graphics, arrow, PlaceAtSide(area, side, arrowWidth, arrowHeight), arrowOpacity);
}

} // namespace

void DrawRankOneVisualCues(HDC dc, const RECT& area, std::uint32_t sides, std::int32_t arrowOpacity,
                           std::int32_t edgeOpacity)
{
    const TraceScope trace("visual_cues.cpp", "DrawRankOneVisualCues");
    if (sides == 0 || IsRectEmpty(&area)) return;
    const CuePictures* const pictures = Pictures();
    if (pictures == nullptr) return;
    Gdiplus::Graphics graphics(dc);
    graphics.SetClip(Gdiplus::Rect(area.left, area.top, area.right - area.left, area.bottom - area.top));
    for (std::size_t side = 0; side < Sides; ++side) {
        if ((sides & (1U << side)) != 0) DrawSide(graphics, *pictures, area, side, arrowOpacity, edgeOpacity);
    }
}

void EndVisualCues() noexcept
{
    g_pictures.reset();
    if (g_gdiplus != 0) Gdiplus::GdiplusShutdown(g_gdiplus);
    g_gdiplus = 0;
}

} // namespace vantrel
