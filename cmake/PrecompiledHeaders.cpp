// A target needs a source; what is compiled here are the headers that come before it.
