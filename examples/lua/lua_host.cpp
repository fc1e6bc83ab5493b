// A host with an interpreter of its own: "lua_host SCRIPT [LANGUAGE]". Scripts call the three gateways like functions of
// their language; Lua values become host arrays on the way in and out. Messages are in LANGUAGE, such as "de".
#include <host/array.h>
#include <host/configuration.h>
#include <host/exceptions.h>
#include <host/text.h>
#include <orb/lvm.h>

#include <lua.hpp>

#include <iostream>
#include <stdexcept>

namespace {

hxArrayPtr toArray(lua_State* lua, int index);

hxArrayPtr toCell(lua_State* lua, int index)
{
    std::vector<hxArrayPtr> elements;
    for (lua_Integer i = 1; i <= static_cast<lua_Integer>(lua_rawlen(lua, index)); ++i) {
        lua_rawgeti(lua, index, i);
        elements.push_back(toArray(lua, lua_gettop(lua)));
        lua_pop(lua, 1);
    }
    return hxArrayPtr(hxCreateCell(std::move(elements)));
}

// A string is a character array, a number a double, a table a cell of its elements, and nil no array at all.
hxArrayPtr toArray(lua_State* lua, int index)
{
    switch (lua_type(lua, index)) {
    case LUA_TNIL:
        return nullptr;
    case LUA_TNUMBER:
        return hxArrayPtr(hxCreateDoubleScalar(lua_tonumber(lua, index)));
    case LUA_TSTRING: {
        std::size_t length = 0;
        const char* const text = lua_tolstring(lua, index, &length);
        return hxArrayPtr(hxCreateString(foundation::core::text::cvt_utf8_ustring({text, length})));
    }
    case LUA_TTABLE:
        return toCell(lua, index);
    default:
        throw std::invalid_argument(std::string("a gateway takes no ") + luaL_typename(lua, index));
    }
}

void pushArray(lua_State* lua, const hxArray* array)
{
    if (hxIsChar(array)) {
        const std::string text = foundation::core::text::cvt_ustring_utf8(get_ustring(array));
        lua_pushlstring(lua, text.data(), text.size());
    } else {
        lua_pushnumber(lua, hxGetScalar(array));
    }
}

// An error is a table, so that scripts can tell one from another: the catalogue's identifier, and the text to show.
void pushError(lua_State* lua, const char* identifier, const std::string& text)
{
    lua_createtable(lua, 0, 2);
    lua_pushstring(lua, identifier);
    lua_setfield(lua, -2, "identifier");
    lua_pushlstring(lua, text.data(), text.size());
    lua_setfield(lua, -2, "text");
}

// Calls the gateway `name` with the values on the stack. False: what is pushed is an error.
bool callGateway(lua_State* lua, const char* name, int& outputCount)
{
    try {
        std::vector<hxArrayPtr> inputs;
        for (int index = 1; index <= lua_gettop(lua); ++index) {
            inputs.push_back(toArray(lua, index));
        }
        for (const hxArrayPtr& output : hxCallGateway(name, 1, inputs)) {
            if (output != nullptr) {
                pushArray(lua, output.get());
                ++outputCount;
            }
        }
        return true;
    } catch (const foundation::core::except::IMsgIDException& error) {
        pushError(lua, error.message().identifier.c_str(), error.userText());
    } catch (const std::exception& error) {
        pushError(lua, "", error.what());
    }
    return false;
}

int gatewayFunction(lua_State* lua)
{
    int outputCount = 0;
    // Lua's errors jump past destructors, so this one is raised where no C++ object is left.
    return callGateway(lua, lua_tostring(lua, lua_upvalueindex(1)), outputCount) ? outputCount : lua_error(lua);
}

void registerGateway(lua_State* lua, const char* name, hxGateway gateway)
{
    hxRegisterGateway(name, gateway);
    lua_pushstring(lua, name);
    lua_pushcclosure(lua, gatewayFunction, 1);
    lua_setglobal(lua, name);
}

// What the user sees of an error that no script has caught.
std::string errorText(lua_State* lua)
{
    if (lua_istable(lua, -1)) {
        lua_getfield(lua, -1, "text");
    }
    const char* const text = lua_tostring(lua, -1);
    return text == nullptr ? "unknown error" : text;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 2) {
        std::cerr << "usage: lua_host SCRIPT [LANGUAGE]\n";
        return 2;
    }
    if (argc > 2) {
        foundation::core::config::Configuration configuration;
        configuration.setLanguage(argv[2]);
        foundation::core::config::configure(configuration);
    }

    const std::unique_ptr<lua_State, decltype(&lua_close)> lua(luaL_newstate(), lua_close);
    luaL_openlibs(lua.get());
    registerGateway(lua.get(), "kelp_container_setup", kelp_container_setup);
    registerGateway(lua.get(), "kelp_container_teardown", kelp_container_teardown);
    registerGateway(lua.get(), "kelp_container_wsl_check", kelp_container_wsl_check);
    if (luaL_dofile(lua.get(), argv[1]) != LUA_OK) {
        std::cerr << "lua_host: " << errorText(lua.get()) << '\n';
        return 1;
    }
    return 0;
}
