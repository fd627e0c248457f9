// The GenApi runtime in one include: node maps built from GenApi 1.1 register
// descriptions, their node interfaces, typed views, ports and callbacks.
#pragma once

#include <GCBase/GCException.h>
#include <GCBase/GCString.h>
#include <GCBase/Synch.h>
#include <GenApi/AccessModeHelpers.h>
#include <GenApi/GenApiExport.h>
#include <GenApi/IBase.h>
#include <GenApi/IBoolean.h>
#include <GenApi/ICategory.h>
#include <GenApi/IDestroy.h>
#include <GenApi/IEnumEntry.h>
#include <GenApi/IEnumeration.h>
#include <GenApi/IFloat.h>
#include <GenApi/IInteger.h>
#include <GenApi/INode.h>
#include <GenApi/INodeMap.h>
#include <GenApi/IPort.h>
#include <GenApi/IPortConstruct.h>
#include <GenApi/IPortReplay.h>
#include <GenApi/IPortWriteList.h>
#include <GenApi/IRegister.h>
#include <GenApi/IValue.h>
#include <GenApi/NodeCallback.h>
#include <GenApi/NodeMapFactory.h>
#include <GenApi/NodeMapRef.h>
#include <GenApi/Pointer.h>
#include <GenApi/PortImpl.h>
#include <GenApi/Types.h>
