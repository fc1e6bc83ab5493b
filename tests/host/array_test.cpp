#include "host/array.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>
#include <vector>

namespace {

int seenOutputs = -1;
std::vector<hxArray*> seenInputs;

void recordingGateway(int outputCount, hxArray* outputs[], int inputCount, hxArray* inputs[])
{
    seenOutputs = outputCount;
    seenInputs.assign(inputs, inputs + inputCount);
    outputs[0] = hxCreateDoubleScalar(-3.0);
}

void silentGateway(int, hxArray*[], int, hxArray*[]) {}

void failingGateway(int, hxArray* outputs[], int, hxArray*[])
{
    outputs[0] = hxCreateDoubleScalar(1.0);
    throw std::runtime_error("from the gateway");
}

TEST(Array, EachClassKnowsItself)
{
    const hxArrayPtr number(hxCreateDoubleScalar(2.5));
    const hxArrayPtr text(hxCreateString(u"é漢字"));
    const hxArrayPtr cell(hxCreateCell({}));
    EXPECT_EQ(hxGetClass(number.get()), hxClass::floating);
    EXPECT_EQ(hxGetClass(text.get()), hxClass::character);
    EXPECT_EQ(hxGetClass(cell.get()), hxClass::cell);
    EXPECT_TRUE(hxIsChar(text.get()));
    EXPECT_FALSE(hxIsChar(number.get()));
    EXPECT_FALSE(hxIsChar(cell.get()));
}

TEST(Array, ValuesComeBackAsTheyWentIn)
{
    EXPECT_EQ(hxGetScalar(hxArrayPtr(hxCreateDoubleScalar(2.5)).get()), 2.5);
    EXPECT_EQ(get_ustring(hxArrayPtr(hxCreateString(u"é漢字")).get()), u"é漢字");
    EXPECT_EQ(get_ustring(hxArrayPtr(hxCreateString(u"")).get()), u"");
}

TEST(Array, TheWrongClassIsAnError)
{
    EXPECT_THROW(get_ustring(hxArrayPtr(hxCreateDoubleScalar(1)).get()), std::invalid_argument);
    EXPECT_THROW(hxGetScalar(hxArrayPtr(hxCreateString(u"1")).get()), std::invalid_argument);
    EXPECT_THROW(hxGetScalar(hxArrayPtr(hxCreateCell({})).get()), std::invalid_argument);
}

TEST(Array, ACellOwnsItsElements)
{
    std::vector<hxArrayPtr> elements;
    elements.emplace_back(hxCreateString(u"inside"));
    const hxArrayPtr cell(hxCreateCell(std::move(elements))); // a leak would be reported by the address sanitizer
    EXPECT_EQ(hxGetClass(cell.get()), hxClass::cell);
    hxDestroyArray(nullptr);
}

TEST(Gateways, AGatewaySeesWhatTheInterpreterPasses)
{
    hxRegisterGateway("recording", recordingGateway);
    std::vector<hxArrayPtr> inputs;
    inputs.emplace_back(hxCreateString(u"archive"));
    inputs.emplace_back(nullptr);
    const std::vector<hxArrayPtr> outputs = hxCallGateway("recording", 2, inputs);
    EXPECT_EQ(seenOutputs, 2);
    EXPECT_EQ(seenInputs, (std::vector<hxArray*>{inputs[0].get(), nullptr}));
    ASSERT_EQ(outputs.size(), 2U);
    EXPECT_EQ(hxGetScalar(outputs[0].get()), -3.0);
    EXPECT_EQ(outputs[1], nullptr);
}

TEST(Gateways, TheFirstSlotIsThereEvenWhenNoOutputIsAskedFor)
{
    hxRegisterGateway("recording", recordingGateway);
    const std::vector<hxArrayPtr> outputs = hxCallGateway("recording", 0, {});
    EXPECT_EQ(seenOutputs, 0);
    ASSERT_EQ(outputs.size(), 1U);
    EXPECT_EQ(hxGetScalar(outputs[0].get()), -3.0);
}

TEST(Gateways, ASecondRegistrationReplacesTheFirst)
{
    hxRegisterGateway("name", recordingGateway);
    hxRegisterGateway("name", silentGateway);
    EXPECT_EQ(hxCallGateway("name", 1, {})[0], nullptr);
}

TEST(Gateways, ErrorsPassThroughAndOutputsAreReleased)
{
    hxRegisterGateway("failing", failingGateway);
    EXPECT_THROW(hxCallGateway("failing", 1, {}), std::runtime_error);
}

TEST(Gateways, AnUnknownNameIsAnErrorThatNamesIt)
{
    try {
        hxCallGateway("no_such_gateway", 0, {});
        FAIL();
    } catch (const std::invalid_argument& error) {
        EXPECT_NE(std::string(error.what()).find("no_such_gateway"), std::string::npos);
    }
}

} // namespace
