#include "camerafeatures.h"

#include <cstdio>
#include <stdexcept>

namespace
{

const char* const mapName = "camera";

// Raises std::invalid_argument with Aravis' message when `error` is set, and frees it.
void check(GError* error, const std::string& name)
{
    if (!error)
        return;
    const std::string message = "camera feature \"" + name + "\": " + error->message;
    g_error_free(error);
    throw std::invalid_argument(message);
}

ArvGcFeatureNode* featureNamed(ArvDevice* device, const std::string& name)
{
    ArvGcNode* const node = arv_device_get_feature(device, name.c_str());
    if (!node || !ARV_IS_GC_FEATURE_NODE(node))
        throw std::invalid_argument("the camera has no feature \"" + name + "\"");
    return ARV_GC_FEATURE_NODE(node);
}

// Enumerations and booleans also answer as integers, so they are asked first.
const char* typeName(ArvGcFeatureNode* feature)
{
    if (ARV_IS_GC_COMMAND(feature))
        return "Command";
    if (ARV_IS_GC_ENUMERATION(feature))
        return "Enumeration";
    if (ARV_IS_GC_BOOLEAN(feature))
        return "Boolean";
    if (ARV_IS_GC_FLOAT(feature))
        return "Float";
    if (ARV_IS_GC_INTEGER(feature))
        return "Integer";
    if (ARV_IS_GC_STRING(feature))
        return "String";
    if (ARV_IS_GC_REGISTER(feature))
        return "Register";
    return "Value";
}

const char* accessName(ArvGcFeatureNode* feature)
{
    GError* error = nullptr;
    const bool implemented = arv_gc_feature_node_is_implemented(feature, &error);
    g_clear_error(&error);
    if (!implemented)
        return "NI";
    const bool available = arv_gc_feature_node_is_available(feature, &error);
    g_clear_error(&error);
    if (!available)
        return "NA";
    switch (arv_gc_feature_node_get_actual_access_mode(feature))
    {
    case ARV_GC_ACCESS_MODE_RO:
        return "RO";
    case ARV_GC_ACCESS_MODE_WO:
        return "WO";
    case ARV_GC_ACCESS_MODE_RW:
        return "RW";
    default:
        return "?";
    }
}

const char* visibilityName(ArvGcFeatureNode* feature)
{
    switch (arv_gc_feature_node_get_visibility(feature))
    {
    case ARV_GC_VISIBILITY_BEGINNER:
        return "Beginner";
    case ARV_GC_VISIBILITY_EXPERT:
        return "Expert";
    case ARV_GC_VISIBILITY_GURU:
        return "Guru";
    case ARV_GC_VISIBILITY_INVISIBLE:
        return "Invisible";
    default:
        return "?";
    }
}

// The range as the node-map tool gives it; empty where the camera does not answer.
std::string rangeOf(ArvGcFeatureNode* feature)
{
    GError* error = nullptr;
    char text[96] = "";
    if (ARV_IS_GC_ENUMERATION(feature))
    {
        guint count = 0;
        const char** const symbolics =
            arv_gc_enumeration_dup_available_string_values(ARV_GC_ENUMERATION(feature), &count, &error);
        g_clear_error(&error);
        std::string list;
        for (guint i = 0; symbolics && i < count; ++i)
        {
            if (i)
                list += '|';
            list += symbolics[i];
        }
        g_free(symbolics);
        return list;
    }
    if (ARV_IS_GC_BOOLEAN(feature) || ARV_IS_GC_COMMAND(feature))
        return "";
    if (ARV_IS_GC_FLOAT(feature))
    {
        ArvGcFloat* const real = ARV_GC_FLOAT(feature);
        const double min = arv_gc_float_get_min(real, &error);
        const double max = error ? 0.0 : arv_gc_float_get_max(real, &error);
        if (!error)
            std::snprintf(text, sizeof text, "%g..%g", min, max);
    }
    else if (ARV_IS_GC_INTEGER(feature))
    {
        ArvGcInteger* const integer = ARV_GC_INTEGER(feature);
        const gint64 min = arv_gc_integer_get_min(integer, &error);
        const gint64 max = error ? 0 : arv_gc_integer_get_max(integer, &error);
        const gint64 inc = error ? 0 : arv_gc_integer_get_inc(integer, &error);
        if (!error)
            std::snprintf(text, sizeof text, "%lld..%lld step %lld", static_cast<long long>(min),
                          static_cast<long long>(max), static_cast<long long>(inc));
    }
    g_clear_error(&error);
    return text;
}

std::string valueOf(ArvGcFeatureNode* feature, const std::string& name)
{
    GError* error = nullptr;
    const char* const value = arv_gc_feature_node_get_value_as_string(feature, &error);
    check(error, name);
    return value ? value : "";
}

void addRows(ArvDevice* device, const char* name, std::vector<FeatureRow>& rows)
{
    ArvGcNode* const node = arv_device_get_feature(device, name);
    if (!node || !ARV_IS_GC_FEATURE_NODE(node))
        return;
    if (ARV_IS_GC_CATEGORY(node))
    {
        for (const GSList* child = arv_gc_category_get_features(ARV_GC_CATEGORY(node)); child;
             child = child->next)
            addRows(device, static_cast<const char*>(child->data), rows);
        return;
    }
    ArvGcFeatureNode* const feature = ARV_GC_FEATURE_NODE(node);
    const std::string access = accessName(feature);
    std::string value;
    if ((access == "RO" || access == "RW") && !ARV_IS_GC_COMMAND(feature))
    {
        // A feature that cannot be read now (a selector pointing nowhere) shows no value.
        try
        {
            value = valueOf(feature, name);
        }
        catch (const std::invalid_argument&)
        {
        }
    }
    rows.push_back(
        {mapName, name, typeName(feature), access, value, rangeOf(feature), visibilityName(feature)});
}

} // namespace

std::vector<FeatureRow> listCameraFeatures(ArvDevice* device)
{
    std::vector<FeatureRow> rows;
    addRows(device, "Root", rows);
    return rows;
}

std::string getCameraFeature(ArvDevice* device, const std::string& name)
{
    return valueOf(featureNamed(device, name), name);
}

void setCameraFeature(ArvDevice* device, const std::string& name, const std::string& value)
{
    ArvGcFeatureNode* const feature = featureNamed(device, name);
    GError* error = nullptr;
    if (ARV_IS_GC_COMMAND(feature))
        arv_gc_command_execute(ARV_GC_COMMAND(feature), &error);
    else
        arv_gc_feature_node_set_value_from_string(feature, value.c_str(), &error);
    check(error, name);
}

std::string cameraDescription(ArvDevice* device)
{
    size_t size = 0;
    const char* const xml = arv_device_get_genicam_xml(device, &size);
    return xml ? std::string(xml, size) : std::string();
}
