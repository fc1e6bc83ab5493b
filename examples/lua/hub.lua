-- Provisions the hub's environment and removes it again, as a user of the host would.
if kelp_container_wsl_check() ~= 0 then
    print("WSL is not usable here")
    os.exit(1)
end
print("WSL is usable")

-- An archive that is not there: the error has the catalogue's identifier and its text in the user's language.
local done, problem = pcall(kelp_container_setup, "/no/such/archive.tar.gz")
assert(not done)
print("refused with " .. problem.identifier .. ":")
print(problem.text)

-- Without an archive: the one of the install tree. A first input that is no text counts as none.
kelp_container_setup()
kelp_container_setup(42, {"further", "inputs", "are", "ignored"})
print("provisioned")

kelp_container_teardown()
print("removed")
