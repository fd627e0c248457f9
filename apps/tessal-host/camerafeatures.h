// The features of a GenICam camera that Aravis opened, as the node-map tool
// shows the nodes' features: the categories under "Root" in the camera's order,
// each feature with its type, access mode, value, range and visibility, all in
// the map "camera"; reading and writing a feature by name, as text.
//
// Every feature can be read and written by name, also one that no category
// lists. Writing a command feature executes it, whatever the value.
#pragma once

#include "nodemaptool.h"

#include <arv.h>

#include <string>
#include <vector>

std::vector<FeatureRow> listCameraFeatures(ArvDevice* device);

// Raise std::invalid_argument for an unknown feature and for a read or write
// that the camera refuses, with Aravis' reason.
std::string getCameraFeature(ArvDevice* device, const std::string& name);
void setCameraFeature(ArvDevice* device, const std::string& name, const std::string& value);

// The camera's GenICam register description.
std::string cameraDescription(ArvDevice* device);
