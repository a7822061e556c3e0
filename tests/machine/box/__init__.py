"""A whole server in a virtual machine: firmware tables, PCI devices, fans and a controller that the kernel of the
guest believes in, and the host's own programs inside."""
