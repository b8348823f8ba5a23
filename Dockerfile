# An image that runs load sessions: the Debian package, no window, no compiler.
#   docker build -t varnel .
#   docker run --rm -v /srv/loads:/srv/loads varnel varnel-admin list
#   docker run --rm -v /srv/loads:/srv/loads varnel 12
# The mounted folder is the installation: vrrepo.mdb, drives/, shares/, the logs. User 1000 must be able to write there.

FROM debian:12 AS build
WORKDIR /src
COPY tools/install_packages tools/
RUN tools/install_packages build package && rm -rf /var/lib/apt/lists/*
COPY . .
RUN packaging/build_deb

FROM debian:12-slim
COPY --from=build /src/build/packages/varnel_*.deb /tmp/
RUN apt-get update \
    && DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends /tmp/varnel_*.deb tdsodbc tzdata \
    && rm -rf /var/lib/apt/lists/* /tmp/varnel_*.deb \
    && useradd --uid 1000 --user-group --home-dir /srv/loads --no-create-home varnel \
    && install -d -o varnel -g varnel -m 750 /srv/loads
COPY packaging/container_entry /usr/local/bin/
USER varnel
WORKDIR /srv/loads
VOLUME /srv/loads
STOPSIGNAL SIGTERM
ENTRYPOINT ["container_entry"]
