// Registers the framework's own types when the library loads, bases before the
// classes that derive from them (registration runs top to bottom in this unit).
#include <TarvikDataProcessingCore/core/AdvancedNode.h>
#include <TarvikDataProcessingCore/core/INodeMapContainer.h>
#include <TarvikDataProcessingCore/core/Image.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <tarvikdataprocessingcore/core/array_impl.h>

namespace Tarvik::DataProcessing
{
namespace
{

using namespace Core;
using Utils::COWPtr;
using Utils::COWPtrBase;
using Utils::DirectBase;
using Utils::IndirectBase;
using Utils::IObject;
using Utils::ISerializable;
using Utils::TypeRegistrar;

const TypeRegistrar<IObject> objectType("Tarvik::DataProcessing::Utils::IObject");
const TypeRegistrar<ISerializable> serializableType("Tarvik::DataProcessing::Utils::ISerializable");
const TypeRegistrar<IValue, DirectBase<IObject>> valueType("Tarvik::DataProcessing::Core::IValue");

template <typename Interface, typename Concrete>
struct ScalarRegistration
{
    ScalarRegistration(const char* interfaceName, const char* concreteName)
        : interface(interfaceName)
        , concrete(concreteName)
    {
    }
    TypeRegistrar<Interface, DirectBase<IValue>, IndirectBase<IObject>> interface;
    TypeRegistrar<Concrete, DirectBase<Interface>, IndirectBase<IValue>, IndirectBase<IObject>> concrete;
};

const ScalarRegistration<IInteger, Integer> integerTypes("Tarvik::DataProcessing::Core::IInteger",
                                                         "Tarvik::DataProcessing::Core::Integer");
const ScalarRegistration<IFloat, Float> floatTypes("Tarvik::DataProcessing::Core::IFloat",
                                                   "Tarvik::DataProcessing::Core::Float");
const ScalarRegistration<IBoolean, Boolean> booleanTypes("Tarvik::DataProcessing::Core::IBoolean",
                                                         "Tarvik::DataProcessing::Core::Boolean");
const ScalarRegistration<IString, String> stringTypes("Tarvik::DataProcessing::Core::IString",
                                                      "Tarvik::DataProcessing::Core::String");

const TypeRegistrar<IImage, DirectBase<IValue>, IndirectBase<IObject>>
    imageInterfaceType("Tarvik::DataProcessing::Core::IImage");
const TypeRegistrar<Image, DirectBase<IImage>, IndirectBase<IValue>, IndirectBase<IObject>>
    imageType("Tarvik::DataProcessing::Core::Image");
const TypeRegistrar<TarvikImage, DirectBase<IImage>, IndirectBase<IValue>, IndirectBase<IObject>>
    tarvikImageType("Tarvik::DataProcessing::Core::TarvikImage");

const TypeRegistrar<IArray, DirectBase<IValue>, IndirectBase<IObject>>
    arrayInterfaceType("Tarvik::DataProcessing::Core::IArray");
const TypeRegistrar<IArrayT<IInteger, void>, DirectBase<IArray>, IndirectBase<IValue>, IndirectBase<IObject>>
    integerArrayInterfaceType("Tarvik::DataProcessing::Core::IArrayT<IInteger>");
const TypeRegistrar<Array<IInteger, void>, DirectBase<IArrayT<IInteger, void>>, IndirectBase<IArray>,
                    IndirectBase<IValue>, IndirectBase<IObject>>
    integerArrayType("Tarvik::DataProcessing::Core::Array<IInteger>");

const TypeRegistrar<INode, DirectBase<IObject>, DirectBase<ISerializable>>
    nodeType("Tarvik::DataProcessing::Core::INode");
const TypeRegistrar<NodeBase, DirectBase<INode>, IndirectBase<IObject>, IndirectBase<ISerializable>>
    nodeBaseType("Tarvik::DataProcessing::Core::NodeBase");
const TypeRegistrar<AdvancedNode, DirectBase<NodeBase>, IndirectBase<INode>, IndirectBase<IObject>,
                    IndirectBase<ISerializable>>
    advancedNodeType("Tarvik::DataProcessing::Core::AdvancedNode");
const TypeRegistrar<INodeMapContainer>
    nodeMapContainerType("Tarvik::DataProcessing::Core::INodeMapContainer");

const TypeRegistrar<COWPtrBase, DirectBase<IObject>>
    cowPtrBaseType("Tarvik::DataProcessing::Utils::COWPtrBase");
template <typename T>
using COWPtrRegistrar = TypeRegistrar<COWPtr<T>, DirectBase<COWPtrBase>, IndirectBase<IObject>>;
const COWPtrRegistrar<IInteger>
    integerInterfacePointerType("Tarvik::DataProcessing::Utils::COWPtr<IInteger>");
const COWPtrRegistrar<Integer> integerPointerType("Tarvik::DataProcessing::Utils::COWPtr<Integer>");
const COWPtrRegistrar<IString> stringInterfacePointerType("Tarvik::DataProcessing::Utils::COWPtr<IString>");
const COWPtrRegistrar<String> stringPointerType("Tarvik::DataProcessing::Utils::COWPtr<String>");
const COWPtrRegistrar<IBoolean>
    booleanInterfacePointerType("Tarvik::DataProcessing::Utils::COWPtr<IBoolean>");
const COWPtrRegistrar<IImage> imageInterfacePointerType("Tarvik::DataProcessing::Utils::COWPtr<IImage>");
const COWPtrRegistrar<Image> imagePointerType("Tarvik::DataProcessing::Utils::COWPtr<Image>");
const COWPtrRegistrar<TarvikImage>
    tarvikImagePointerType("Tarvik::DataProcessing::Utils::COWPtr<TarvikImage>");
const COWPtrRegistrar<Float> floatPointerType("Tarvik::DataProcessing::Utils::COWPtr<Float>");
const COWPtrRegistrar<Array<IInteger, void>>
    integerArrayPointerType("Tarvik::DataProcessing::Utils::COWPtr<Array<IInteger>>");

} // namespace
} // namespace Tarvik::DataProcessing
