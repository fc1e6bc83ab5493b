#include "terminal/account.h"

#include "host/environment.h"

#include <unistd.h>

namespace kelpctl {

Account currentAccount()
{
    Account account;
    account.name = foundation::core::env::variable("USER").value_or("");
    account.elevated = geteuid() == 0;
    return account;
}

} // namespace kelpctl
