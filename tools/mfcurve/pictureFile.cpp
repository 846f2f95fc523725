// SPDX-License-Identifier: MIT
#include "tools/mfcurve/pictureFile.h"

#include <filesystem>

#include "tools/mfcurve/failure.h"
#include "tools/mfcurve/files.h"
#include "tools/mfcurve/nearest.h"

#ifdef MFCURVE_HAS_RSVG
#include <cairo-pdf.h>
#include <cairo.h>
#include <cmath>
#include <librsvg/rsvg.h>
#include <memory>
#endif

namespace mfcurve {

namespace {

bool hasEnding(const std::string& path, const char* ending)
{
    return equalsInAnyCase(std::filesystem::path(path).extension().string(), ending);
}

#ifdef MFCURVE_HAS_RSVG

struct Release {
    void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
template <class Object>
using Owned = std::unique_ptr<Object, Release>;

cairo_status_t append(void* text, const unsigned char* bytes, unsigned length)
{
    static_cast<std::string*>(text)->append(reinterpret_cast<const char*>(bytes), length);
    return CAIRO_STATUS_SUCCESS;
}

// For each pixel of the picture, PNG gets two dots, for sharp letters; PDF gets one point.
std::string rendered(const std::string& path, const std::string& svg)
{
    constexpr double kDots = 2.0;
    GError* error = nullptr;
    const Owned<RsvgHandle> handle(
        rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(svg.data()), svg.size(), &error));
    if (!handle) {
        const std::string reason = error->message;
        g_error_free(error);
        throw Failure(kFailed, path, "cannot draw the picture: " + reason);
    }
    gdouble width = 0.0;
    gdouble height = 0.0;
    rsvg_handle_get_intrinsic_size_in_pixels(handle.get(), &width, &height);
    const bool isPng = hasEnding(path, ".png");
    std::string result;
    {
        const Owned<cairo_surface_t> surface(
            isPng
                ? cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(std::ceil(width * kDots)),
                                             static_cast<int>(std::ceil(height * kDots)))
                : cairo_pdf_surface_create_for_stream(append, &result, width, height));
        const Owned<cairo_t> context(cairo_create(surface.get()));
        if (isPng)
            cairo_scale(context.get(), kDots, kDots);
        const RsvgRectangle viewport{0.0, 0.0, width, height};
        const bool isDrawn =
            rsvg_handle_render_document(handle.get(), context.get(), &viewport, &error) != FALSE;
        g_clear_error(&error);
        if (isPng)
            cairo_surface_write_to_png_stream(surface.get(), append, &result);
        cairo_surface_finish(surface.get());
        if (!isDrawn || cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS)
            throw Failure(kFailed, path, "cannot draw the picture; a smaller --size may help");
    }
    return result;
}

#endif

}  // namespace

void checkPictureName(const std::string& path)
{
    if (isStandardStream(path) || hasEnding(path, ".svg"))
        return;
    const bool isKnown = hasEnding(path, ".png") || hasEnding(path, ".pdf");
    if (!isKnown)
        throw UsageError("a picture is a file .svg, .png or .pdf, not \"" + path + "\"");
#ifndef MFCURVE_HAS_RSVG
    throw UsageError("this mfcurve was built without librsvg and writes .svg alone, not \"" + path + "\"");
#endif
}

void writePicture(const std::string& path, const std::string& svg)
{
#ifdef MFCURVE_HAS_RSVG
    if (!isStandardStream(path) && !hasEnding(path, ".svg"))
        return writeOutput(path, rendered(path, svg));
#endif
    writeOutput(path, svg);
}

}  // namespace mfcurve
