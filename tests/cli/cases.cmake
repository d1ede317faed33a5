# Cases are added by the commands they test.
