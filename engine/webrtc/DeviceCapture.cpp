#include "engine/webrtc/DeviceCapture.h"

#include "engine/webrtc/DeviceList.h"

namespace Corvanta::Engine {

GstOwned<GstElement> MakeCameraElement(const std::string& name, const PictureShape& shape) {
    auto device = DeviceList::Get().MakeElement(DeviceKind::Camera, name);
    auto filter = MakeElement("capsfilter");
    if (!device || !filter) return nullptr;
    // Plain pictures at the full rate, if it has them, else compressed ones of the size, else anything.
    std::string size = ",width=(int)" + std::to_string(shape.width);
    size += ",height=(int)" + std::to_string(shape.height);
    const std::string rate = std::to_string(shape.frameRate) + "/1";
    std::string wanted = "video/x-raw" + size;
    wanted += ",framerate=(fraction)[" + rate + ",240/1];image/jpeg" + size;
    wanted += ";video/x-raw;image/jpeg;video/x-h264";
    const GstOwned<GstCaps> caps(gst_caps_from_string(wanted.c_str()));
    g_object_set(filter.get(), "caps", caps.get(), nullptr);

    GstOwned<GstElement> bin(GST_ELEMENT(gst_object_ref_sink(gst_bin_new(nullptr))));
    gst_bin_add_many(GST_BIN(bin.get()), GST_ELEMENT(gst_object_ref(device.get())),
                     GST_ELEMENT(gst_object_ref(filter.get())), nullptr);
    if (gst_element_link(device.get(), filter.get()) == FALSE) return nullptr;
    const GstOwned<GstPad> pad(gst_element_get_static_pad(filter.get(), "src"));
    gst_element_add_pad(bin.get(), gst_ghost_pad_new("src", pad.get()));
    return bin;
}

}  // namespace Corvanta::Engine
