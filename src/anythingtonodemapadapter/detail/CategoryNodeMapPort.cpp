#include "CategoryNodeMapPort.h"

#include "RegisterDescriptionText.h"

namespace AnythingToNodeMapAdapter::Detail
{

namespace Text = RegisterDescriptionText;

void CCategoryNodeMapPort::readRegister(void*, int64_t, int64_t) {}

void CCategoryNodeMapPort::writeRegister(const void*, int64_t, int64_t) {}

// A category takes no address and has no port: ownPort, portName, prefix and the
// running address are not used.
void CCategoryNodeMapPort::writeXml(std::ostream& stream, bool, const GenICam::gcstring&,
                                    const GenICam::gcstring&, int64_t&)
{
    const auto& port = parameterPort();
    if (!port)
    {
        return;
    }
    stream << "    <Category Name=\"" << port->getName() << "\">\n";
    Text::writeTexts(stream, *port);
    Text::writeValueLines(stream, "pFeature", getRelation("Feature"));
    stream << "    </Category>\n";
}

} // namespace AnythingToNodeMapAdapter::Detail
